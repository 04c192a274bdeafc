#include "views/MediaButtons.h"

#include "core/BrowserWindow.h"
#include "core/Entry.h"
#include "core/ExplorerEvents.h"
#include "core/Services.h"
#include "media/AudioPlayButton.h"
#include "media/AudioPreview.h"
#include "media/InlineVideoSurface.h"
#include "media/MediaTypes.h"
#include "media/VideoPreview.h"
#include "views/ExplorerIconCanvas.h"
#include "views/ExplorerIconView.h"
#include "views/ExplorerRowDelegate.h"
#include "views/ExplorerViewModes.h"
#include "views/FileTable.h"
#include "views/IconGrid.h"

#include <QEvent>
#include <QTimer>

namespace orvane {

namespace {
bool playable(const Entry& entry) {
    return !entry.directory && !entry.isPhone() &&
           (MediaTypes::isAudioByName(entry.location) || MediaTypes::isVideo(entry.location));
}
} // namespace

MediaButtons::MediaButtons(BrowserWindow& window, ExplorerViewModes& viewModes)
    : QObject(window.widget()), w(window), modes(viewModes) {
    FileTable* table = w.table();
    table->viewport()->installEventFilter(this);
    if (ExplorerIconView* icons = modes.iconView()) icons->canvas()->installEventFilter(this);
    ExplorerRowDelegate* delegate = table->rowDelegate();
    delegate->hasAccessory = [this, delegate](const QModelIndex& index) {
        const auto& entries = w.entries();
        return index.column() == delegate->primaryColumn && size_t(index.row()) < entries.size() &&
               playable(entries[size_t(index.row())]);
    };
    connect(&w.events(), &ExplorerEvents::listingChanged, this, &MediaButtons::schedule);
}

bool MediaButtons::eventFilter(QObject*, QEvent* event) {
    if (event->type() == QEvent::Paint || event->type() == QEvent::Resize || event->type() == QEvent::Show ||
        event->type() == QEvent::Hide)
        schedule();
    return false;
}

void MediaButtons::schedule() {
    if (queued) return;
    queued = true;
    QTimer::singleShot(0, this, [this] {
        queued = false;
        placeNow();
    });
}

void MediaButtons::placeNow() {
    Services& services = w.services();
    if (!services.audio() || !services.video()) return;
    place(w.table()->viewport(), tableSpots(), tablePool);
    if (ExplorerIconView* icons = modes.iconView()) place(icons->canvas(), iconSpots(), iconPool);
    QWidget* view = nullptr;
    const QString& playing = services.video()->current();
    const QRect rect = playing.isEmpty() ? QRect() : videoRect(playing, &view);
    if (view) services.video()->layout(playing, view, rect);
}

QList<MediaButtons::Spot> MediaButtons::tableSpots() const {
    FileTable* table = w.table();
    QList<Spot> spots;
    if (!table->isVisible() || !table->model()) return spots;
    const auto& entries = w.entries();
    const int column = table->rowDelegate()->primaryColumn;
    const int first = qMax(0, table->rowAt(0));
    int last = table->rowAt(table->viewport()->height() - 1);
    if (last < 0) last = int(entries.size()) - 1;
    for (int row = first; row <= last && size_t(row) < entries.size(); ++row) {
        if (!playable(entries[size_t(row)])) continue;
        const QRect cell = table->visualRect(table->model()->index(row, column));
        const QRect icon(cell.left() + ExplorerRowDelegate::imageLeft,
                         cell.top() + (cell.height() - ExplorerRowDelegate::imageSize) / 2,
                         ExplorerRowDelegate::imageSize, ExplorerRowDelegate::imageSize);
        spots.append({entries[size_t(row)].location, ExplorerRowDelegate::accessoryRect(cell), icon});
    }
    return spots;
}

QList<MediaButtons::Spot> MediaButtons::iconSpots() const {
    ExplorerIconCanvas* canvas = modes.iconView()->canvas();
    QList<Spot> spots;
    if (!canvas->isVisible()) return spots;
    const QRect shown = canvas->rect();
    for (int i = 0; i < canvas->count(); ++i) {
        const QRect frame = canvas->itemRect(i);
        if (!frame.intersects(shown)) continue;
        const Entry* entry = canvas->entryAt(i);
        if (!entry || !playable(*entry)) continue;
        const QRect icon = canvas->gridLayout().iconRect(QRectF(frame)).toAlignedRect();
        const QRect button(icon.right() - 26, icon.bottom() - 26, 26, 26);
        spots.append({entry->location, button, icon});
    }
    return spots;
}

void MediaButtons::place(QWidget* surface, const QList<Spot>& spots, QList<AudioPlayButton*>& pool) {
    while (pool.size() < spots.size())
        pool.append(makeButton(surface));
    for (qsizetype i = 0; i < pool.size(); ++i) {
        AudioPlayButton* button = pool[i];
        if (i >= spots.size()) {
            button->hide();
            continue;
        }
        button->setAudioPath(spots[i].path);
        if (button->geometry() != spots[i].button) button->setGeometry(spots[i].button);
        button->show();
    }
}

AudioPlayButton* MediaButtons::makeButton(QWidget* surface) {
    Services& services = w.services();
    auto* button = new AudioPlayButton(QString(), *services.audio(), *services.video(), surface);
    button->playlist = [this] {
        QStringList files;
        for (const Entry& entry : w.entries())
            if (!entry.directory) files << entry.location;
        return files;
    };
    button->videoAction = [this, button] { playVideo(button); };
    return button;
}

void MediaButtons::playVideo(AudioPlayButton* button) {
    QWidget* view = nullptr;
    const QRect rect = videoRect(button->audioPath(), &view);
    if (view) w.services().video()->toggle(button->audioPath(), view, rect);
}

QRect MediaButtons::videoRect(const QString& path, QWidget** view) const {
    const bool icons = modes.iconView() && modes.iconView()->canvas()->isVisible();
    for (const Spot& spot : icons ? iconSpots() : tableSpots()) {
        if (spot.path != path) continue;
        *view = icons ? modes.iconView()->canvas() : w.table()->viewport();
        return spot.icon;
    }
    return {};
}

QList<AudioPlayButton*> MediaButtons::visibleButtons() const {
    QList<AudioPlayButton*> shown;
    for (AudioPlayButton* button : tablePool + iconPool)
        if (button->isVisible()) shown << button;
    return shown;
}

} // namespace orvane
