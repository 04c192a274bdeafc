#pragma once

#include <QList>
#include <QString>
#include <QUrl>
#include <QUuid>

namespace orvane {

// One tab of a window: where it is, where it has been, and its search text.
struct TabState {
    QUuid id = QUuid::createUuid();
    QUrl url;
    QList<QUrl> history;
    int index = 0;
    QString query;

    static TabState at(const QUrl& url) {
        TabState tab;
        tab.url = url;
        tab.history = {url};
        return tab;
    }
    // A step to a new place discards the forward part of the history.
    void push(const QUrl& place) {
        history = history.mid(0, index + 1);
        history.append(place);
        index = int(history.size()) - 1;
    }
    bool canGoBack() const { return index > 0; }
    bool canGoForward() const { return index < history.size() - 1; }
};

} // namespace orvane
