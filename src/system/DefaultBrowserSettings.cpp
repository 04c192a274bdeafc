#include "system/DefaultBrowserSettings.h"

#include "core/Settings.h"

#include <QDateTime>
#include <QPointer>
#include <QThread>
#include <memory>

namespace orvane {

namespace {
const QString alreadyWaiting = QStringLiteral(
    "A default-browser change is already waiting for the desktop. Let it finish or answer its dialog first.");
const QString notFound = QStringLiteral(
    "The requested application could not be found or its identity does not match. No settings were changed.");
const QString unknownPresent =
    QStringLiteral("The desktop did not report the current folder browser. No settings were changed because "
                   "automatic recovery would be unavailable.");
const QString restored = QStringLiteral(" Previous settings were restored.");
const QString notRestored =
    QStringLiteral(" Automatic recovery could not restore every setting. Open Default folder browser and "
                   "choose Restore previous file manager.");
} // namespace

struct DefaultBrowserSettings::Transaction {
    Status previous;
    QString identifier;
    QVariant fileViewer;
    Completion completion;
};

bool DefaultBrowserSettings::Status::isOrvaneFileViewer() const {
    return fileViewer.typeId() == QMetaType::QString && fileViewer.toString() == paneIdentifier;
}

bool DefaultBrowserSettings::Status::isOrvaneDefault() const {
    return folderIdentifier == paneIdentifier && isOrvaneFileViewer();
}

bool DefaultBrowserSettings::Status::isPreviousDefault() const {
    return folderIdentifier && *folderIdentifier != paneIdentifier && !isOrvaneFileViewer();
}

DefaultBrowserSettings::DefaultBrowserSettings(Environment environment, Settings& defaults,
                                               QString paneApplication, QObject* parent)
    : QObject(parent), env(std::move(environment)), defaults(defaults),
      paneApplication(std::move(paneApplication)) {
    pane = env.applicationIdentifier(this->paneApplication).value_or(this->paneApplication);
}

DefaultBrowserSettings::Status DefaultBrowserSettings::status() const {
    Status now;
    now.folderApplication = env.readFolderApplication();
    if (now.folderApplication) now.folderIdentifier = env.applicationIdentifier(*now.folderApplication);
    now.fileViewer = env.readFileViewer();
    now.paneIdentifier = pane;
    return now;
}

void DefaultBrowserSettings::makeOrvaneDefault(Completion completion) {
    change(paneApplication, pane, pane, std::move(completion));
}

void DefaultBrowserSettings::restorePreviousDefault(Completion completion) {
    const QVariantMap original = defaults.defaultBrowserSnapshot();
    const QString application = original.value(QStringLiteral("folderApplicationURL")).toString();
    const QString identifier = original.value(QStringLiteral("folderIdentifier")).toString();
    change(application == paneApplication ? QString() : application,
           identifier == pane ? QString() : identifier, {}, std::move(completion));
}

bool DefaultBrowserSettings::equalPreferences(const QVariant& a, const QVariant& b) {
    if (!a.isValid() || !b.isValid()) return a.isValid() == b.isValid();
    return a == b;
}

bool DefaultBrowserSettings::matches(const Status& now, const QString& identifier,
                                     const QVariant& fileViewer) const {
    return now.folderIdentifier == identifier && equalPreferences(now.fileViewer, fileViewer);
}

QVariantMap DefaultBrowserSettings::stateRecord(const Status& status) {
    QVariantMap state{{QStringLiteral("capturedAt"), QDateTime::currentDateTimeUtc()},
                      {QStringLiteral("fileViewerWasPresent"), status.fileViewer.isValid()}};
    if (status.folderApplication)
        state.insert(QStringLiteral("folderApplicationURL"), *status.folderApplication);
    if (status.folderIdentifier) state.insert(QStringLiteral("folderIdentifier"), *status.folderIdentifier);
    if (status.fileViewer.isValid()) state.insert(QStringLiteral("fileViewer"), status.fileViewer);
    return state;
}

// Only the first state ever seen is kept, however many changes follow; the state before this change
// is kept until it ends, so a crash can be undone at the next start.
void DefaultBrowserSettings::preserveOriginalState(const Status& previous) {
    defaults.setDefaultBrowserPending(stateRecord(previous));
    if (defaults.defaultBrowserSnapshot().isEmpty())
        defaults.setDefaultBrowserSnapshot(stateRecord(previous));
}

bool DefaultBrowserSettings::recoverInterruptedChange(Completion completion) {
    const QVariantMap pending = defaults.defaultBrowserPending();
    if (pending.isEmpty()) return false;
    defaults.setDefaultBrowserPending({});
    change(pending.value(QStringLiteral("folderApplicationURL")).toString(),
           pending.value(QStringLiteral("folderIdentifier")).toString(),
           pending.value(QStringLiteral("fileViewer")), std::move(completion));
    return true;
}

void DefaultBrowserSettings::change(const QString& application, const QString& identifier,
                                    const QVariant& fileViewer, Completion completion) {
    if (QThread::currentThread() != thread()) qFatal("Default-browser changes must begin on the main thread");
    if (changing) return completion({{}, alreadyWaiting});
    if (!env.applicationExists(application) || env.applicationIdentifier(application) != identifier)
        return completion({{}, notFound});
    const Status previous = status();
    if (!previous.folderApplication || !previous.folderIdentifier) return completion({{}, unknownPresent});
    if (matches(previous, identifier, fileViewer)) return completion({previous, {}});

    auto t =
        std::make_shared<Transaction>(Transaction{previous, identifier, fileViewer, std::move(completion)});
    preserveOriginalState(previous);
    changing = true;
    emit stateChanged();
    if (previous.folderIdentifier == identifier) return applyFileViewer(t);
    QPointer<DefaultBrowserSettings> self(this);
    env.setFolderApplication(application, [self, t](std::optional<QString> error) {
        QMetaObject::invokeMethod(
            self.data(),
            [self, t, error] {
                if (!error) return self->applyFileViewer(t);
                const Status now = self->status();
                if (now.folderIdentifier == t->previous.folderIdentifier &&
                    equalPreferences(now.fileViewer, t->previous.fileViewer))
                    return self->finish(t,
                                        {{},
                                         QStringLiteral("The desktop did not change the folder browser: ") +
                                             *error + QStringLiteral(" No settings were changed.")});
                self->rollback(
                    t, QStringLiteral("The desktop could not finish changing the folder browser: ") + *error);
            },
            Qt::QueuedConnection);
    });
}

void DefaultBrowserSettings::applyFileViewer(std::shared_ptr<Transaction> t) {
    if (status().folderIdentifier != t->identifier)
        return rollback(t, QStringLiteral("The desktop did not confirm the requested folder browser."));
    if (!env.writeFileViewer(t->fileViewer))
        return rollback(t, QStringLiteral("The Show in folder service could not be changed."));
    const Status now = status();
    if (matches(now, t->identifier, t->fileViewer)) return finish(t, {now, {}});
    rollback(t, QStringLiteral("The new default-browser settings could not be verified."));
}

void DefaultBrowserSettings::rollback(std::shared_ptr<Transaction> t, const QString& message) {
    emit stateChanged();
    env.writeFileViewer(t->previous.fileViewer);
    if (status().folderIdentifier == t->previous.folderIdentifier) return checkRecovery(t, message, {});
    QPointer<DefaultBrowserSettings> self(this);
    env.setFolderApplication(
        *t->previous.folderApplication, [self, t, message](std::optional<QString> error) {
            QMetaObject::invokeMethod(
                self.data(), [self, t, message, error] { self->checkRecovery(t, message, error); },
                Qt::QueuedConnection);
        });
}

void DefaultBrowserSettings::checkRecovery(std::shared_ptr<Transaction> t, const QString& message,
                                           const std::optional<QString>& error) {
    const Status now = status();
    if (matches(now, *t->previous.folderIdentifier, t->previous.fileViewer))
        return finish(t, {{}, message + restored});
    finish(t, {{}, message + notRestored + (error ? QStringLiteral(" Desktop: ") + *error : QString())});
}

void DefaultBrowserSettings::finish(std::shared_ptr<Transaction> t, const Result& result) {
    changing = false;
    defaults.setDefaultBrowserPending({});
    emit stateChanged();
    emit didChange();
    t->completion(result);
}

void DefaultBrowserSettings::changeFileViewer(const QVariant& value, Completion completion) {
    if (QThread::currentThread() != thread()) qFatal("File-viewer changes must begin on the main thread");
    if (changing) return completion({{}, alreadyWaiting});
    if (value.toString() == pane &&
        (!env.applicationExists(paneApplication) || env.applicationIdentifier(paneApplication) != pane))
        return completion({{},
                           QStringLiteral("Orvane could not be found or its identity does not match. "
                                          "No settings were changed.")});
    const Status previous = status();
    if (equalPreferences(previous.fileViewer, value)) return completion({previous, {}});
    auto t = std::make_shared<Transaction>(Transaction{previous, {}, value, std::move(completion)});
    preserveOriginalState(previous);
    changing = true;
    emit stateChanged();
    if (env.writeFileViewer(value)) {
        const Status now = status();
        if (equalPreferences(now.fileViewer, value)) return finish(t, {now, {}});
    }
    env.writeFileViewer(previous.fileViewer);
    const bool back = equalPreferences(status().fileViewer, previous.fileViewer);
    finish(
        t,
        {{},
         back ? QStringLiteral("The Show in folder service could not be changed and verified. Its previous "
                               "holder was restored.")
              : QStringLiteral("The Show in folder service could not be changed and verified, and automatic "
                               "recovery failed. Choose Restore previous file manager.")});
}

} // namespace orvane
