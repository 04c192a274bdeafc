#pragma once

#include "core/BrowserApp.h"
#include "system/ExternalOpenPlan.h"

#include <QList>
#include <QObject>
#include <QTimer>
#include <QUrl>
#include <utility>

namespace orvane {

class BrowserWindow;

// Requests from outside to open folders and files: from the command line now, from the system's
// open events where there are any. They wait, in order, until launching is over and no modal dialog
// is up, then each shows its folders in tabs of the windows there are, or in a new window.
class ExternalOpenRequests : public QObject {
    Q_OBJECT
public:
    explicit ExternalOpenRequests(BrowserApp& app);

    void receive(const QList<QUrl>& urls, ExternalOpenMode mode);
    void drain();
    void open(const ExternalOpenPlan& plan, bool activate, bool properties = false);
    bool waiting() const { return !pending.isEmpty(); }

    // Clears the search, shows hidden files when one of the items is hidden, and selects the items
    // by name in what the window shows; then, when asked, opens their Properties.
    static void applyExternalSelection(BrowserWindow& window, const QList<QUrl>& urls,
                                       bool properties = false);

    // The paths and file URLs of a command line, exact bytes kept; options are left out.
    static QList<QUrl> fromArguments(int argc, char** argv);

private:
    BrowserWindow* preferredWindow() const;
    BrowserWindow* show(const ExternalFolderRequest& request, BrowserWindow*& preferred);
    void report(const ExternalOpenPlan& plan, BrowserWindow* last, bool openedAny);

    BrowserApp& app;
    QList<std::pair<QList<QUrl>, ExternalOpenMode>> pending;
    QTimer retry;
};

} // namespace orvane
