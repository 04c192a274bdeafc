#pragma once

#include "media/InlineVideoSurface.h"

#include <QObject>
#include <QPointer>
#include <QRect>
#include <QString>
#include <functional>
#include <memory>
#include <optional>

class QAudioOutput;
class QMediaPlayer;
class QProcess;
class QVideoSink;

namespace orvane {

class AudioPreview;
class MediaPath;

// The one video player of the process. A video plays over its own icon on a surface that takes no
// clicks; what the platform player refuses is first converted by ffmpeg to a temporary MP4. Starting
// a video stops the audio, and starting audio stops the video.
class VideoPreview : public QObject {
    Q_OBJECT
public:
    explicit VideoPreview(AudioPreview& audio, QObject* parent = nullptr);
    ~VideoPreview() override;

    static bool supports(const QString& path);

    // Shows and plays `path` over `rect` of `view`, or pauses and resumes the one on show.
    void toggle(const QString& path, QWidget* view, const QRect& rect);
    // Keeps the surface over a row or tile that moved.
    void layout(const QString& path, QWidget* view, const QRect& rect);
    void togglePlayback();
    void seek(double seconds);
    void stop();

    const QString& current() const { return url; }
    bool playing() const;
    double elapsed() const;
    double duration() const;
    const QString& failure() const { return failureText; }
    InlineVideoSurface* surfaceWidget() const { return surface; }
    bool converting() const { return decoder != nullptr; }

    std::optional<QString> decoderPath;
    QString temporaryFolder;

signals:
    void changed();
    void failed(const QString& text);

private:
    void ensurePlayer();
    void load(const QString& file, bool allowFallback);
    void convert();
    void converted(quint64 token, const QString& output, int exitCode, bool crashed);
    void playerFailed(const QString& text);
    void showMessage(const QString& text);
    void surfaceGone();

    AudioPreview& audio;
    QMediaPlayer* player = nullptr;
    QAudioOutput* output = nullptr;
    QVideoSink* sink = nullptr;
    QPointer<InlineVideoSurface> surface;
    std::unique_ptr<MediaPath> source;
    QString url;
    QString loaded;
    bool fallback = false;
    QProcess* decoder = nullptr;
    QString temporary;
    quint64 generation = 0;
    QString failureText;
};

} // namespace orvane
