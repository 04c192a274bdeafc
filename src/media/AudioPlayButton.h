#pragma once

#include <QAbstractButton>
#include <QStringList>
#include <functional>

namespace orvane {

class AudioPreview;
class VideoPreview;

// The round play button of an audio or video row or tile. It shows whether its file plays and, when
// the file cannot play, says why in its tool tip.
class AudioPlayButton : public QAbstractButton {
    Q_OBJECT
public:
    AudioPlayButton(const QString& path, AudioPreview& audio, VideoPreview& video, QWidget* parent = nullptr);

    const QString& audioPath() const { return file; }
    // Set on a row that is reused for another file.
    void setAudioPath(const QString& path);
    bool active() const;

    // Replaces everything else at a click (phone rows, which first need a local copy).
    std::function<void()> mediaAction;
    // The local copy compared with the current file in place of `audioPath`.
    QString resolvedPath;
    std::function<void()> videoAction;
    // Asked at each click: the files of the window, in display order.
    std::function<QStringList()> playlist;
    double symbolSize = 22;

    QSize sizeHint() const override { return {26, 26}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void clicked();
    void refresh();

    QString file;
    AudioPreview& audio;
    VideoPreview& video;
    bool shownActive = false;
};

} // namespace orvane
