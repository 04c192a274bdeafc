#pragma once

#include <QObject>
#include <QString>
#include <QVariant>
#include <functional>
#include <optional>

namespace orvane {

class FileManagerBus;
class Settings;

// Makes Orvane the desktop's folder browser and goes back, as one transaction over two pieces of
// per-user state: the application bound to folders and the reveal service. It refuses to start
// without knowing the present state, reads back after every step, and on any mismatch rolls back to
// what it captured, saying how far the recovery got. All contact with the desktop goes through
// `Environment`, so every path can be run without it.
class DefaultBrowserSettings : public QObject {
    Q_OBJECT
public:
    // An application is named by what the desktop stores for it (desktop file IDs); an empty name is
    // "no application", which is a state too.
    struct Environment {
        std::function<std::optional<QString>()> readFolderApplication;
        std::function<std::optional<QString>(const QString& application)> applicationIdentifier;
        std::function<QVariant()> readFileViewer; // invalid: nobody set
        std::function<bool(const QVariant& value)> writeFileViewer;
        // The completion gets an error text, or nothing; it may come later.
        std::function<void(const QString& application, std::function<void(std::optional<QString> error)>)>
            setFolderApplication;
        std::function<bool(const QString& application)> applicationExists;
    };

    struct Status {
        std::optional<QString> folderApplication;
        std::optional<QString> folderIdentifier;
        QVariant fileViewer;
        QString paneIdentifier;
        bool isOrvaneFileViewer() const;
        bool isOrvaneDefault() const;
        bool isPreviousDefault() const;
    };

    struct Result {
        std::optional<Status> status;
        QString error;
        bool ok() const { return status.has_value(); }
    };
    using Completion = std::function<void(const Result&)>;

    DefaultBrowserSettings(Environment environment, Settings& defaults, QString paneApplication,
                           QObject* parent = nullptr);
    // The desktop's own: the user's mimeapps.list, read and written by its exact bytes, and the
    // reveal service as `bus` holds it.
    static Environment desktop(FileManagerBus& bus);
    // The application's name as the desktop shows it.
    static QString applicationName(const QString& application);

    Status status() const;
    bool isChanging() const { return changing; }
    const QString& paneIdentifier() const { return pane; }
    void makeOrvaneDefault(Completion completion);
    // Back to the application captured before the first change ever made, or to none if there was none.
    void restorePreviousDefault(Completion completion);
    void changeFileViewer(const QVariant& value, Completion completion);
    void change(const QString& application, const QString& identifier, const QVariant& fileViewer,
                Completion completion);
    // A change that a crash cut short goes back to the state before it; false when there was none.
    bool recoverInterruptedChange(Completion completion);

    static bool equalPreferences(const QVariant& a, const QVariant& b);

signals:
    // At each step of a change, for the window.
    void stateChanged();
    // At the end of every change, after success or failure alike.
    void didChange();

private:
    struct Transaction;
    void preserveOriginalState(const Status& previous);
    static QVariantMap stateRecord(const Status& status);
    void applyFileViewer(std::shared_ptr<Transaction> t);
    void rollback(std::shared_ptr<Transaction> t, const QString& message);
    void checkRecovery(std::shared_ptr<Transaction> t, const QString& message,
                       const std::optional<QString>& error);
    void finish(std::shared_ptr<Transaction> t, const Result& result);
    bool matches(const Status& now, const QString& identifier, const QVariant& fileViewer) const;

    Environment env;
    Settings& defaults;
    QString paneApplication;
    QString pane;
    bool changing = false;
};

} // namespace orvane
