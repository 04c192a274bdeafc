#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QUrl>

namespace orvane {

class BrowserWindow;
class PropertiesWindow;

// The window's Properties command: a new Properties window for the command selection, or for the
// current folder when nothing is selected; on a phone tab, the phone browser's own answer.
class PropertiesCommands : public QObject {
    Q_OBJECT
public:
    explicit PropertiesCommands(BrowserWindow& window);

    void propertiesAction();
    // Opens one more window for these items and starts its reading.
    PropertiesWindow* open(const QList<QUrl>& urls);
    // The open Properties windows of this browser window, oldest first.
    QList<PropertiesWindow*> windows() const;

private:
    bool enabled() const;

    BrowserWindow& w;
    QList<QPointer<PropertiesWindow>> shown;
};

} // namespace orvane
