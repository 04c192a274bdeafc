#include "window/TabDragging.h"

#include "chrome/ExplorerTabStrip.h"
#include "chrome/ExplorerTabView.h"
#include "core/InlineRename.h"
#include "core/TabList.h"
#include "core/WindowCommands.h"
#include "kit/WindowWidgets.h"
#include "platform/NativePath.h"
#include "window/AppDelegate.h"
#include "window/Explorer.h"

#include <QApplication>
#include <QCursor>
#include <QDrag>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QPointer>
#include <QScreen>

namespace orvane {

namespace {
// The one tab drag of the process; the window it came from learns at the end whether a strip here
// took it.
struct ActiveDrag {
    QPointer<Explorer> source;
    QUuid id;
    bool accepted = false;
    bool closeSource = false; // the source gave its last tab and closes once the drag is over
};
std::optional<ActiveDrag> active;

QString urlText(const QUrl& url) {
    return url.isLocalFile() ? QString::fromLatin1(NativePath::encodedUrl(url.toLocalFile()))
                             : url.toString();
}

QUrl urlOf(const QString& text) {
    const QString path = NativePath::fromEncodedUrl(text.toLatin1());
    return path.isEmpty() ? QUrl(text) : QUrl::fromLocalFile(path);
}

void endEditing(Explorer& window) {
    if (InlineRename* rename = window.inlineRename()) {
        rename->cancelPendingRename();
        rename->finishInlineRename(false);
    }
}

QList<QUrl> selectionOf(Explorer& window, int index) {
    QList<QUrl> urls;
    if (index == window.tabs().active())
        for (const Entry& entry : window.selected())
            urls << entry.url();
    return urls;
}

// The drop point at the middle of the window's width and 20 below its top, inside the screen.
void placeAt(QWidget& window, const QPoint& point, const QSize& size) {
    QScreen* screen = QGuiApplication::screenAt(point);
    const QRect room = (screen ? screen : window.screen())->availableGeometry();
    const QSize fitted = size.boundedTo(room.size());
    window.resize(fitted);
    const int x = qBound(room.left(), point.x() - fitted.width() / 2, room.right() - fitted.width() + 1);
    const int y = qBound(room.top(), point.y() - 20, room.bottom() - fitted.height() + 1);
    window.move(x, y);
}
} // namespace

TabDragging::TabDragging(Explorer& window) : QObject(&window), w(window) {
    ExplorerTabStrip* strip = w.widgets().tabStrip;
    connect(strip, &ExplorerTabStrip::tabDragRequested, this, &TabDragging::startDrag);
    connect(strip, &ExplorerTabStrip::tabDropped, this, &TabDragging::dropped);
    connect(strip, &ExplorerTabStrip::tabMenuRequested, this, &TabDragging::showMenu);
    w.commands().add(
        QStringLiteral("moveTabToNewWindow"), QStringLiteral("Move tab to new window"),
        [this] { detachTab(w, w.tabs().current().id); },
        [this] { return w.tabs().count() > 1 && !w.busy(); });
}

QMimeData* TabDragging::tabData(const TabState& tab) {
    QJsonArray history;
    for (const QUrl& url : tab.history)
        history.append(urlText(url));
    const QJsonObject state{{QStringLiteral("id"), tab.id.toString(QUuid::WithoutBraces)},
                            {QStringLiteral("url"), urlText(tab.url)},
                            {QStringLiteral("history"), history},
                            {QStringLiteral("index"), tab.index},
                            {QStringLiteral("query"), tab.query}};
    auto* data = new QMimeData;
    data->setData(ExplorerTabStrip::tabMimeType(), QJsonDocument(state).toJson(QJsonDocument::Compact));
    return data;
}

std::optional<TabState> TabDragging::readTab(const QMimeData& data) {
    const QJsonObject state = QJsonDocument::fromJson(data.data(ExplorerTabStrip::tabMimeType())).object();
    TabState tab;
    tab.id = QUuid::fromString(state.value(QStringLiteral("id")).toString());
    tab.url = urlOf(state.value(QStringLiteral("url")).toString());
    for (const QJsonValue& url : state.value(QStringLiteral("history")).toArray())
        tab.history << urlOf(url.toString());
    tab.index = state.value(QStringLiteral("index")).toInt();
    tab.query = state.value(QStringLiteral("query")).toString();
    if (tab.id.isNull() || !tab.url.isValid() || tab.url.isEmpty()) return std::nullopt;
    if (tab.history.isEmpty()) tab.history = {tab.url};
    tab.index = qBound(0, tab.index, int(tab.history.size()) - 1);
    return tab;
}

bool TabDragging::moveTab(Explorer& source, const QUuid& id, Explorer& target, int slot) {
    const int index = source.tabs().indexOf(id);
    if (source.busy() || target.busy() || index < 0) return false;
    if (&source == &target) {
        source.tabs().move(index, slot);
        source.widgets().tabStrip->setTabs(source.tabs().all(), source.tabs().active());
        return true;
    }
    endEditing(source);
    endEditing(target);
    const TabState tab = source.tabs().at(index);
    const QList<QUrl> chosen = selectionOf(source, index);
    target.activateTab(target.tabs().insert(slot, tab));
    if (!chosen.isEmpty()) target.selectWhenListed(chosen);
    // The last tab's window goes only when the drag that carried it is over.
    if (source.tabs().count() > 1)
        source.closeTab(index);
    else if (!active || active->source != &source)
        QMetaObject::invokeMethod(&source, &QWidget::close, Qt::QueuedConnection);
    target.activateWindow();
    target.raise();
    return true;
}

Explorer* TabDragging::detachTab(Explorer& source, const QUuid& id, std::optional<QPoint> dropPoint) {
    const int index = source.tabs().indexOf(id);
    if (source.busy() || index < 0) return nullptr;
    if (source.tabs().count() == 1) {
        if (dropPoint) placeAt(source, *dropPoint, source.size());
        return &source;
    }
    endEditing(source);
    const TabState tab = source.tabs().at(index);
    const QList<QUrl> chosen = selectionOf(source, index);
    Explorer* fresh =
        source.application()->newWindow(tab.url.isLocalFile() ? std::optional(tab.url) : std::nullopt);
    fresh->tabs().at(0) = tab;
    fresh->activateTab(0);
    if (!chosen.isEmpty()) fresh->selectWhenListed(chosen);
    if (dropPoint)
        placeAt(*fresh, *dropPoint, source.size());
    else
        fresh->setGeometry(source.geometry().translated(28, 28));
    source.closeTab(index);
    fresh->activateWindow();
    fresh->raise();
    return fresh;
}

void TabDragging::startDrag(const QUuid& id) {
    const int index = w.tabs().indexOf(id);
    if (active || w.busy() || index < 0) return;
    active = ActiveDrag{&w, id};
    cancelled = false;
    qApp->installEventFilter(this); // Escape ends the drag without a change
    auto* drag = new QDrag(w.widgets().tabStrip);
    drag->setMimeData(tabData(w.tabs().at(index)));
    for (ExplorerTabView* view : w.widgets().tabStrip->orderedTabViews())
        if (view->tabID() == id) drag->setPixmap(view->grab());
    const Qt::DropAction result = drag->exec(Qt::MoveAction, Qt::MoveAction);
    qApp->removeEventFilter(this);
    finishDrag(result, id);
}

// Taken here, taken by another process, or let go outside every window.
void TabDragging::finishDrag(Qt::DropAction result, const QUuid& id) {
    const ActiveDrag done = *active;
    active.reset();
    if (cancelled) return;
    if (done.accepted || result == Qt::MoveAction) {
        const int index = w.tabs().indexOf(id);
        if (done.closeSource || (!done.accepted && w.tabs().count() == 1))
            QMetaObject::invokeMethod(&w, &QWidget::close, Qt::QueuedConnection);
        else if (!done.accepted && index >= 0)
            w.closeTab(index);
        return;
    }
    const QPoint at = QCursor::pos();
    for (BrowserWindow* window : w.application()->browserWindows())
        if (window->widget()->frameGeometry().contains(at)) return;
    detachTab(w, id, at);
}

void TabDragging::dropped(const QMimeData* data, int slot) {
    const std::optional<TabState> tab = readTab(*data);
    if (!tab) return;
    if (active && active->id == tab->id) {
        Explorer* source = active->source;
        const bool last = source && source != &w && source->tabs().count() == 1;
        if (source && moveTab(*source, tab->id, w, slot)) {
            active->accepted = true;
            active->closeSource = last;
        }
        return;
    }
    // From another Orvane process, which closes its tab when it hears the move was taken.
    if (w.busy()) return;
    TabState arrived = *tab;
    if (w.tabs().indexOf(arrived.id) >= 0) arrived.id = QUuid::createUuid();
    w.activateTab(w.tabs().insert(slot, arrived));
    w.activateWindow();
}

void TabDragging::showMenu(const QUuid& id, const QPoint& globalPos) {
    QMenu menu(&w);
    QAction* move = menu.addAction(QStringLiteral("Move tab to new window"));
    move->setEnabled(w.tabs().count() > 1 && !w.busy());
    if (menu.exec(globalPos) == move) detachTab(w, id);
}

bool TabDragging::eventFilter(QObject*, QEvent* event) {
    if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape)
        cancelled = true;
    return false;
}

} // namespace orvane
