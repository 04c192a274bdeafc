#include "media/AudioPlayButton.h"

#include "kit/Palette.h"
#include "media/AudioPreview.h"
#include "media/InlineVideoSurface.h"
#include "media/VideoPreview.h"
#include "platform/NativePath.h"

#include <QPainter>
#include <QPainterPath>

namespace orvane {

AudioPlayButton::AudioPlayButton(const QString& path, AudioPreview& audioPlayer, VideoPreview& videoPlayer,
                                 QWidget* parent)
    : QAbstractButton(parent), file(path), audio(audioPlayer), video(videoPlayer) {
    setFixedSize(26, 26);
    setCursor(Qt::ArrowCursor);
    setFocusPolicy(Qt::NoFocus);
    connect(this, &QAbstractButton::clicked, this, &AudioPlayButton::clicked);
    connect(&audio, &AudioPreview::changed, this, &AudioPlayButton::refresh);
    connect(&video, &VideoPreview::changed, this, &AudioPlayButton::refresh);
    refresh();
}

void AudioPlayButton::setAudioPath(const QString& path) {
    if (path == file) return;
    file = path;
    resolvedPath.clear();
    refresh();
}

bool AudioPlayButton::active() const {
    const QString& mine = resolvedPath.isEmpty() ? file : resolvedPath;
    if (VideoPreview::supports(mine)) return video.current() == mine && video.playing();
    return audio.current() == mine && audio.playing();
}

void AudioPlayButton::clicked() {
    if (mediaAction) return mediaAction();
    if (VideoPreview::supports(file)) {
        if (videoAction) videoAction();
        return;
    }
    audio.toggle(file, playlist ? std::optional(playlist()) : std::nullopt);
}

void AudioPlayButton::refresh() {
    const bool now = active();
    const bool isVideo = VideoPreview::supports(file);
    const QString name = NativePath::display(file.section(u'/', -1));
    QString text = isVideo ? (now ? QStringLiteral("Stop video ") : QStringLiteral("Preview video "))
                           : (now ? QStringLiteral("Pause ") : QStringLiteral("Play "));
    text += name;
    const QString& mine = resolvedPath.isEmpty() ? file : resolvedPath;
    const QString why = !isVideo && audio.current() == mine ? audio.failure() : QString();
    const QString tip = why.isEmpty() ? text : text + u'\n' + why;
    if (now == shownActive && toolTip() == tip) return;
    shownActive = now;
    setToolTip(tip);
    setAccessibleName(text);
    setAccessibleDescription(why);
    update();
}

void AudioPlayButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double d = symbolSize;
    const QRectF circle((width() - d) / 2, (height() - d) / 2, d, d);
    painter.setPen(Qt::NoPen);
    painter.setBrush(isDown() ? Palette::ink() : Palette::muted());
    painter.drawEllipse(circle);
    painter.setBrush(Palette::canvas());
    const QPointF c = circle.center();
    const double s = d / 22.0;
    if (shownActive) {
        painter.drawRect(QRectF(c.x() - 4 * s, c.y() - 5 * s, 3 * s, 10 * s));
        painter.drawRect(QRectF(c.x() + 1 * s, c.y() - 5 * s, 3 * s, 10 * s));
    } else {
        QPainterPath triangle;
        triangle.moveTo(c.x() - 3 * s, c.y() - 5.5 * s);
        triangle.lineTo(c.x() + 6 * s, c.y());
        triangle.lineTo(c.x() - 3 * s, c.y() + 5.5 * s);
        triangle.closeSubpath();
        painter.drawPath(triangle);
    }
}

} // namespace orvane
