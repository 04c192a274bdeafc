#include "search/PhoneSearch.h"

#include "phone/PhoneBridge.h"
#include "phone/PhoneProtocol.h"
#include "search/SearchText.h"

#include <QPointer>
#include <QSet>
#include <QTimer>

namespace orvane {

struct PhoneSearch::Run {
    quint64 token = 0;
    QString folded;
    int scope = 0;
    bool hidden = false;
    Completion completion;
    QList<QList<PhoneItem>> pending; // a stack: the walk goes depth first
    QSet<QString> visited;
    QList<PhoneItem> results;
    Parents parents;
    int failed = 0;
    qsizetype batched = 0; // results already handed to a batch
    QElapsedTimer sinceBatch;

    bool matches(const PhoneItem& item) const {
        return visible(item, hidden) && SearchText::containsFolded(item.name, folded);
    }
};

namespace {
QString keyOf(const QList<PhoneItem>& chain) {
    return chain.isEmpty() ? QStringLiteral("storages") : chain.last().textKey();
}

QStringList requestFor(const QList<PhoneItem>& chain) {
    if (chain.isEmpty()) return PhoneProtocol::storages();
    return PhoneProtocol::list(chain.last().storage, chain.last().id);
}
} // namespace

PhoneSearch::PhoneSearch(QObject* parent) : QObject(parent) {
    read = [](const QStringList& args, Reply done) { PhoneBridge::run(args, {}, std::move(done)); };
}

PhoneSearch::~PhoneSearch() = default;

bool PhoneSearch::visible(const PhoneItem& item, bool hidden) {
    return hidden || !item.name.startsWith(u'.');
}

QString PhoneSearch::scopeLabel(int scope) {
    switch (scope) {
    case 0:
        return QStringLiteral("This folder");
    case 2:
        return QStringLiteral("This phone");
    default:
        return QStringLiteral("Folder + subfolders");
    }
}

void PhoneSearch::cancel() {
    ++generation;
    current.reset();
}

void PhoneSearch::start(const QString& text, int scope, const QList<PhoneItem>& history,
                        const QList<PhoneItem>& base, bool hidden, Completion completion) {
    cancel();
    auto run = std::make_shared<Run>();
    run->token = generation;
    run->folded = SearchText::fold(text, true);
    run->scope = scope;
    run->hidden = hidden;
    if (scope == 0) {
        QList<PhoneItem> found;
        for (const PhoneItem& item : base)
            if (run->matches(item)) found << item;
        completion(found, {}, scopeLabel(0));
        return;
    }
    run->completion = std::move(completion);
    run->pending << (scope == 2 ? QList<PhoneItem>() : history);
    current = run;
    // Typing on restarts the search before this fires: the debounce.
    QTimer::singleShot(debounceMs, this, [this, run] { next(run); });
}

void PhoneSearch::next(const std::shared_ptr<Run>& run) {
    while (run->token == generation) {
        if (run->pending.isEmpty()) {
            QString summary = scopeLabel(run->scope);
            if (run->failed > 0)
                summary += QStringLiteral(" · ") + QString::number(run->failed) +
                           QStringLiteral(" unavailable folders");
            current.reset();
            run->completion(run->results, run->parents, summary);
            return;
        }
        const QList<PhoneItem> chain = run->pending.takeLast();
        const QString key = keyOf(chain);
        if (run->visited.contains(key)) continue;
        run->visited.insert(key);
        const QPointer<PhoneSearch> self(this);
        read(requestFor(chain), [self, run, chain](const PhoneReply& reply) {
            if (self) self->receive(run, chain, reply);
        });
        return;
    }
}

void PhoneSearch::receive(const std::shared_ptr<Run>& run, const QList<PhoneItem>& chain,
                          const PhoneReply& reply) {
    if (run->token != generation) return;
    if (reply.error) {
        ++run->failed;
    } else {
        for (const PhoneItem& item : reply.items.value_or(QList<PhoneItem>())) {
            if (!visible(item, run->hidden)) continue;
            // A phone that lists an item twice shows it once.
            if (run->matches(item) && !run->parents.contains(item.textKey())) {
                run->results << item;
                run->parents.insert(item.textKey(), chain);
            }
            if (item.folder) run->pending << (QList<PhoneItem>(chain) << item);
        }
    }
    if (progress) progress(int(run->visited.size()), int(run->results.size()));
    offerBatch(*run);
    // Queued rather than called, so the main thread breathes and no stack of calls builds up.
    QMetaObject::invokeMethod(
        this, [this, run] { next(run); }, Qt::QueuedConnection);
}

// The first match goes out at once, later ones at most once per interval.
void PhoneSearch::offerBatch(Run& run) {
    if (!batch || run.batched == run.results.size()) return;
    if (run.batched > 0 && run.sinceBatch.isValid() && run.sinceBatch.elapsed() < batchIntervalMs) return;
    const QList<PhoneItem> found = run.results.mid(run.batched);
    run.batched = run.results.size();
    run.sinceBatch.start();
    batch(found, run.parents);
}

} // namespace orvane
