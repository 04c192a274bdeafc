#pragma once

#include <QList>
#include <QObject>
#include <QRect>

class QWidget;

namespace orvane {

class AudioPlayButton;
class BrowserWindow;
struct Entry;
class ExplorerViewModes;

// Puts the round play button on every visible audio and video row of the details table and tile
// of the icon views, and keeps a playing video over its own icon. Buttons are real widgets, so
// assistive tools and the keyboard-free pointer reach them; only the visible ones exist.
class MediaButtons : public QObject {
    Q_OBJECT
public:
    MediaButtons(BrowserWindow& window, ExplorerViewModes& modes);

    // Lays the buttons out now instead of after the next paint.
    void placeNow();
    QList<AudioPlayButton*> visibleButtons() const;
    // Where a file's video plays in the view on show, or an empty rectangle.
    QRect videoRect(const QString& path, QWidget** view) const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Spot {
        QString path;
        QRect button;
        QRect icon;
    };
    void schedule();
    QList<Spot> tableSpots() const;
    QList<Spot> iconSpots() const;
    void place(QWidget* surface, const QList<Spot>& spots, QList<AudioPlayButton*>& pool);
    AudioPlayButton* makeButton(QWidget* surface);
    void playVideo(AudioPlayButton* button);

    BrowserWindow& w;
    ExplorerViewModes& modes;
    QList<AudioPlayButton*> tablePool;
    QList<AudioPlayButton*> iconPool;
    bool queued = false;
};

} // namespace orvane
