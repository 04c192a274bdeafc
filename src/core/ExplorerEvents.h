#pragma once

#include <QObject>
#include <QUrl>

namespace orvane {

// What happened in a window, for the parts that show it: status line, panes, navigation, previews.
class ExplorerEvents : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

signals:
    // The active tab shows another place (navigation, a tab switch, history).
    void locationChanged(const QUrl& url);
    // The listing of the active tab was read again or changed in place.
    void listingChanged();
    void selectionChanged();
    void busyChanged(bool busy);
    // An inline edit over the file list opened or closed; the listing holds still meanwhile.
    void editingChanged(bool editing);
};

} // namespace orvane
