#pragma once

#include <QList>
#include <QUrl>
#include <optional>
#include <vector>

class QObject;

namespace orvane {

class BrowserWindow;
class Services;

// What a request from outside asks for its items: open folders as themselves, show every item
// selected in its folder, or show their Properties.
enum class ExternalOpenMode { Open, Reveal, Properties };

// The application as its subsystems hold it: the windows, in the order they were opened.
class BrowserApp {
public:
    virtual ~BrowserApp() = default;
    virtual QObject* object() = 0;
    virtual std::vector<BrowserWindow*> browserWindows() const = 0;
    virtual BrowserWindow* openWindow(const std::optional<QUrl>& initialURL = std::nullopt) = 0;
    virtual bool launched() const = 0;
    // Requests from outside to open folders and files; they wait until launching is over.
    virtual void receiveExternalURLs(const QList<QUrl>& urls,
                                     ExternalOpenMode mode = ExternalOpenMode::Open) = 0;
    virtual Services& services() = 0;
};

} // namespace orvane
