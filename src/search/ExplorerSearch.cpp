#include "search/ExplorerSearch.h"

#include "core/Job.h"
#include "core/Jobs.h"

#include "platform/NativePath.h"
#include "platform/Platform.h"
#include "search/IndexSearch.h"
#include "search/SearchText.h"

#include <QCoreApplication>
#include <QPointer>
#include <QThreadPool>

namespace orvane {

namespace {
using Generation = std::shared_ptr<std::atomic<quint64>>;

// Runs `call` on the main thread if the search still exists and `token` is still its generation.
template <class Call>
void post(const QPointer<ExplorerSearch>& self, const Generation& generation, quint64 token, Call call) {
    QMetaObject::invokeMethod(
        QCoreApplication::instance(),
        [self, generation, token, call]() mutable {
            if (self && generation->load() == token) call();
        },
        Qt::QueuedConnection);
}

std::vector<Entry> entriesOf(const QStringList& paths, bool hidden, const std::atomic<quint64>& generation,
                             quint64 token) {
    std::vector<Entry> entries;
    entries.reserve(size_t(paths.size()));
    for (const QString& path : paths) {
        if (generation.load(std::memory_order_relaxed) != token) return {};
        if (hidden || !SearchText::hasHiddenComponent(path)) entries.push_back(Entry::fromPath(path));
    }
    return entries;
}
} // namespace

ExplorerSearch::ExplorerSearch(QObject* parent) : QObject(parent) {
    pending.setSingleShot(true);
    pending.setInterval(debounceMs);
    connect(&pending, &QTimer::timeout, this, &ExplorerSearch::launch);
}

// A walk still under way sees the new generation at its next item and ends unheard.
ExplorerSearch::~ExplorerSearch() {
    cancel();
}

void ExplorerSearch::start(const QString& text, const QString& folder, bool wholeComputer, bool hidden,
                           Completion completion, Batch batch) {
    cancel();
    request = {text, folder, wholeComputer, hidden, std::move(completion), std::move(batch)};
    pending.start();
}

void ExplorerSearch::cancel() {
    ++*generation;
    pending.stop();
    active = false;
    endJob();
}

void ExplorerSearch::listIn(Jobs& jobs, QObject* window) {
    jobList = &jobs;
    owner = window;
}

void ExplorerSearch::endJob() {
    if (Job* ended = std::exchange(job, nullptr)) ended->finish();
}

QString ExplorerSearch::folderNote(bool someUnavailable) {
    return someUnavailable ? QStringLiteral("Folder + subfolders · some locations unavailable")
                           : QStringLiteral("Folder + subfolders");
}

QString ExplorerSearch::computerNote() {
    return Platform::instance().word(PlatformWord::ThisComputer) + QStringLiteral(" · indexed locations");
}

QString ExplorerSearch::unavailableNote() {
    return QStringLiteral("Search index unavailable");
}

QString ExplorerSearch::indexProblem(const QString& reason) {
    const QString db = IndexSearch::database();
    const QString build = db.isEmpty() ? QStringLiteral("sudo updatedb")
                                       : QStringLiteral("updatedb -o ") + NativePath::display(db);
    return QStringLiteral("The search index is unavailable.\n") + reason +
           QStringLiteral("\nTo build it, run: ") + build;
}

void ExplorerSearch::launch() {
    active = true;
    if (jobList) {
        job = jobList->start(QStringLiteral("Search"), owner, false);
        job->setCanceller([this] { cancel(); });
    }
    Request run = std::exchange(request, {});
    if (run.wholeComputer)
        askIndex(std::move(run), generation->load());
    else
        walkFolder(std::move(run), generation->load());
}

void ExplorerSearch::walkFolder(Request run, quint64 token) {
    const QPointer<ExplorerSearch> self(this);
    const Generation gen = generation;
    QThreadPool::globalInstance()->start([self, gen, token, run = std::move(run)] {
        const auto finish = [&](std::vector<Entry> results, bool someUnavailable) {
            post(self, gen, token,
                 [self, completion = run.completion, results = std::move(results),
                  note = folderNote(someUnavailable)]() mutable {
                     self->active = false;
                     self->endJob();
                     completion(std::move(results), note, {});
                 });
        };
        // A folder inside a hidden one shows nothing of its own while hidden items are not shown.
        if (!run.hidden && SearchText::hasHiddenComponent(run.folder)) return finish({}, false);
        FolderWalk walk(run.folder, run.text, run.hidden);
        if (run.batch)
            walk.setBatch(
                [&](std::vector<Entry>&& found, FolderWalk::Progress progress) {
                    post(self, gen, token,
                         [batch = run.batch, found = std::move(found), progress] { batch(found, progress); });
                },
                std::chrono::milliseconds(batchIntervalMs));
        if (walk.run(*gen, token)) finish(std::move(walk.results()), walk.someUnavailable());
    });
}

void ExplorerSearch::askIndex(Request run, quint64 token) {
    const QPointer<ExplorerSearch> self(this);
    const Generation gen = generation;
    QThreadPool::globalInstance()->start([self, gen, token, run = std::move(run)] {
        const IndexSearch::Answer answer = IndexSearch::run(run.text, *gen, token);
        std::vector<Entry> results = entriesOf(answer.paths, run.hidden, *gen, token);
        const QString note = answer.available ? computerNote() : unavailableNote();
        const QString problem = answer.available ? QString() : indexProblem(answer.reason);
        post(self, gen, token,
             [self, completion = run.completion, results = std::move(results), note, problem]() mutable {
                 self->active = false;
                 self->endJob();
                 completion(std::move(results), note, problem);
             });
    });
}

} // namespace orvane
