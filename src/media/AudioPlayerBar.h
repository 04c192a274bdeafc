#pragma once

#include <QWidget>

class QLabel;
class QToolButton;
class QVariantAnimation;

namespace orvane {

class AudioPreview;
class BrowserWindow;
class VideoPreview;
class WaveformSlider;

// The bar at a window's foot while anything plays: title, time, timeline and three buttons. It keeps
// no playback state of its own; it reads both players at each of their notifications.
class AudioPlayerBar : public QWidget {
    Q_OBJECT
public:
    explicit AudioPlayerBar(BrowserWindow& window);

    static QString time(double seconds);
    void update();

    WaveformSlider* timeline() const { return slider; }
    QToolButton* playButton() const { return play; }
    QToolButton* previousButton() const { return previous; }
    QToolButton* nextButton() const { return next; }
    QLabel* titleLabel() const { return title; }
    QLabel* elapsedLabel() const { return currentTime; }
    QLabel* totalLabel() const { return totalTime; }
    bool expanded() const { return open; }

private:
    bool videoIsSubject() const;
    void setExpanded(bool value);
    void scrub();
    void toggle();
    void back();
    void forward();
    void tellFailure(const QString& kind, const QString& text);

    BrowserWindow& w;
    AudioPreview& audio;
    VideoPreview& video;
    QLabel* title;
    QLabel* currentTime;
    QLabel* totalTime;
    WaveformSlider* slider;
    QToolButton* play;
    QToolButton* previous;
    QToolButton* next;
    QVariantAnimation* animation;
    bool open = false;
};

} // namespace orvane
