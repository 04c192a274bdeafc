#pragma once

#include <QObject>
#include <QStringList>

namespace orvane {

// The temporary folders that Copy fills with phone files for the clipboard: on a tmpfs /tmp they are
// memory. Each goes once the clipboard no longer holds it, a failed copy's at once, and those of a
// run that ended without removing them at the next start. Main thread only.
class ClipboardFolders : public QObject {
    Q_OBJECT
public:
    static ClipboardFolders& shared();
    // A new empty folder of this process, or empty with `error` set.
    QString make(QString& error);
    // The clipboard now holds the folder.
    void hold(const QString& folder);
    void discard(const QString& folder);

private:
    ClipboardFolders();
    void clipboardChanged();

    QStringList held;
};

} // namespace orvane
