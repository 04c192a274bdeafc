#pragma once

#include <QObject>
#include <QVariantMap>
#include <functional>

namespace orvane {

// The desktop portal's folder chooser, over the session bus. Choosing a folder there is what grants a
// sandboxed install the right to read it; outside a sandbox it reads as an ordinary chooser.
class FolderPortal : public QObject {
    Q_OBJECT
public:
    using Chosen = std::function<void(const QString& path)>; // empty when cancelled or failed

    explicit FolderPortal(QObject* parent = nullptr);

    // Whether the session bus has the portal running or can start it.
    static bool available();
    // Opens the chooser at `folder`; `done` runs once, on the main thread.
    void choose(const QString& folder, const QString& title, Chosen done);

private slots:
    void response(uint code, const QVariantMap& results);

private:
    void finish(const QString& path);

    Chosen pending;
    QString handle;
};

} // namespace orvane
