#pragma once

#include <QList>
#include <QUrl>
#include <optional>
#include <vector>

class QObject;

namespace orvane {

class BrowserWindow;
class Services;

// The application as its subsystems hold it: the windows, in the order they were opened.
class BrowserApp {
public:
    virtual ~BrowserApp() = default;
    virtual QObject* object() = 0;
    virtual std::vector<BrowserWindow*> browserWindows() const = 0;
    virtual BrowserWindow* openWindow(const std::optional<QUrl>& initialURL = std::nullopt) = 0;
    virtual bool launched() const = 0;
    // Requests from outside to open folders and files; they wait until launching is over.
    virtual void receiveExternalURLs(const QList<QUrl>& urls, bool reveal = false) = 0;
    virtual Services& services() = 0;
};

} // namespace orvane
