#pragma once

#include "core/Entry.h"

#include <QString>
#include <QUrl>
#include <vector>

class QMenu;

namespace orvane {

// What a tab shows: a local folder or a place that another subsystem knows how to list.
// The window keeps navigation and history; the content lists, reports and answers commands.
class TabContent {
public:
    virtual ~TabContent() = default;
    virtual bool handles(const QUrl& url) const = 0;
    // Lists the window's current location again.
    virtual void reload() = 0;
    // The window shows something else now (another tab, another kind of place).
    virtual void leave() {}
    // A reload is still under way: what it lists arrives later.
    virtual bool reading() const { return false; }
    // The parent of `url` as this content sees it, or an invalid URL at the top.
    virtual QUrl parent(const QUrl& url) const = 0;
    // Whether the window's command `name` applies here; a local folder answers all. One that doesn't
    // is greyed and refused while this content is shown.
    virtual bool answers(const QString& name) const {
        Q_UNUSED(name);
        return true;
    }
    // Opens chosen items this content's own way; false leaves them to the window.
    virtual bool open(const std::vector<Entry>& items) {
        Q_UNUSED(items);
        return false;
    }
    // Where a listed folder leads, to open it in a new tab: its own URL unless the content knows better.
    virtual QUrl address(const Entry& folder) const { return folder.url(); }
    // Runs the window's command `name` this content's own way; false leaves it to the command.
    virtual bool run(const QString& name) {
        Q_UNUSED(name);
        return false;
    }
    // Fills the file area's context menu; false leaves it to the window.
    virtual bool contextMenu(QMenu* menu) {
        Q_UNUSED(menu);
        return false;
    }
    // Takes the name typed in the window's inline editor for `item`; false leaves it to the window.
    virtual bool rename(const Entry& item, const QString& name) {
        Q_UNUSED(item);
        Q_UNUSED(name);
        return false;
    }
    // The file keys (copy, paste, rename, delete…) reach this content's `run` before the window's own
    // key table: a place with its own items.
    virtual bool takesFileKeys() const { return false; }
    // Goes where the typed address leads; false leaves the text to the window.
    virtual bool goTo(const QString& typed) {
        Q_UNUSED(typed);
        return false;
    }
};

} // namespace orvane
