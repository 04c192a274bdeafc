#include "media/VideoPreview.h"

#include "media/AudioPreview.h"
#include "media/InlineVideoSurface.h"
#include "media/MediaDecoder.h"
#include "media/MediaPath.h"
#include "media/MediaTypes.h"

#include <QAudioDevice>
#include <QAudioOutput>
#include <QDir>
#include <QFile>
#include <QMediaPlayer>
#include <QProcess>
#include <QTimer>
#include <QUrl>
#include <QUuid>
#include <QVideoFrame>
#include <QVideoSink>
#include <cmath>

namespace orvane {

namespace {
const QString preparing = QStringLiteral("Preparing video preview…");
const QString noDecoder = QStringLiteral("Additional video decoder unavailable.");
const QString damaged = QStringLiteral("This video is damaged, protected, or uses an unsupported codec.");
const QString undecodable = QStringLiteral("This video could not be decoded.");

double seconds(qint64 ms) {
    const double s = double(ms) / 1000.0;
    return std::isfinite(s) && s > 0 ? s : 0;
}
} // namespace

VideoPreview::VideoPreview(AudioPreview& audioPlayer, QObject* parent)
    : QObject(parent), decoderPath(MediaDecoder::executable()), temporaryFolder(QDir::tempPath()),
      audio(audioPlayer) {
    audio.beforeStart = [self = QPointer(this)] {
        if (self) self->stop();
    };
}

VideoPreview::~VideoPreview() {
    stop();
}

bool VideoPreview::supports(const QString& path) {
    return MediaTypes::isVideo(path);
}

void VideoPreview::ensurePlayer() {
    if (player) return;
    player = new QMediaPlayer(this);
    output = new QAudioOutput(this);
    sink = new QVideoSink(this);
    player->setAudioOutput(output);
    player->setVideoSink(sink);
    connect(sink, &QVideoSink::videoFrameChanged, this, [this](const QVideoFrame& frame) {
        if (surface && frame.isValid()) surface->setFrame(frame.toImage());
    });
    connect(player, &QMediaPlayer::errorOccurred, this,
            [this](QMediaPlayer::Error, const QString& text) { playerFailed(text); });
    connect(player, &QMediaPlayer::mediaStatusChanged, this, [this](QMediaPlayer::MediaStatus status) {
        if (status == QMediaPlayer::InvalidMedia) playerFailed(player->errorString());
        emit changed();
    });
    connect(player, &QMediaPlayer::playbackStateChanged, this, &VideoPreview::changed);
    connect(player, &QMediaPlayer::durationChanged, this, &VideoPreview::changed);
    connect(player, &QMediaPlayer::positionChanged, this, &VideoPreview::changed);
}

void VideoPreview::toggle(const QString& path, QWidget* view, const QRect& rect) {
    if (path == url && failureText.isEmpty()) return togglePlayback();
    stop();
    audio.stop();
    ensurePlayer();
    url = path;
    surface = new InlineVideoSurface(view);
    surface->setGeometry(rect);
    // Under the tile's own play button, which stays in reach; over the icon the view paints.
    surface->show();
    surface->lower();
    connect(surface, &QObject::destroyed, this, [this] {
        // A closed window or a row that went away ends the video, once the dust settles.
        QTimer::singleShot(0, this, &VideoPreview::surfaceGone);
    });
    source = std::make_unique<MediaPath>(path);
    if (MediaTypes::platformRefusesVideo(path))
        convert();
    else
        load(source->usable(), true);
}

void VideoPreview::surfaceGone() {
    if (!surface && !url.isEmpty()) stop();
}

void VideoPreview::layout(const QString& path, QWidget* view, const QRect& rect) {
    if (path != url || !surface || surface->parentWidget() != view || surface->geometry() == rect) return;
    surface->setGeometry(rect);
}

void VideoPreview::load(const QString& file, bool allowFallback) {
    if (surface) surface->showMessage({});
    loaded = file;
    fallback = allowFallback;
    player->setSource(QUrl::fromLocalFile(file));
    player->play();
    emit changed();
}

void VideoPreview::playerFailed(const QString& text) {
    if (url.isEmpty() || loaded.isEmpty() || player->source() != QUrl::fromLocalFile(loaded)) return;
    loaded.clear();
    if (fallback) return convert();
    showMessage(text.isEmpty() ? undecodable : text);
}

void VideoPreview::convert() {
    if (player) {
        player->pause();
        player->setSource({});
    }
    showMessage(preparing);
    if (!decoderPath) return showMessage(noDecoder);
    const quint64 token = generation;
    const QString out = temporaryFolder + QStringLiteral("/PaneVideo-") +
                        QUuid::createUuid().toString(QUuid::WithoutBraces) + QStringLiteral(".mp4");
    temporary = out;
    decoder = new QProcess(this);
    decoder->setStandardOutputFile(QProcess::nullDevice());
    decoder->setStandardErrorFile(QProcess::nullDevice());
    QProcess* process = decoder;
    connect(process, &QProcess::finished, this,
            [this, process, token, out](int code, QProcess::ExitStatus st) {
                process->deleteLater();
                converted(token, out, code, st == QProcess::CrashExit);
            });
    connect(process, &QProcess::errorOccurred, this, [this, process, token](QProcess::ProcessError e) {
        if (e != QProcess::FailedToStart || token != generation) return;
        process->deleteLater();
        decoder = nullptr;
        showMessage(process->errorString());
    });
    process->start(*decoderPath, MediaDecoder::videoArguments(source->usable(), out));
}

void VideoPreview::converted(quint64 token, const QString& out, int exitCode, bool crashed) {
    if (token != generation) {
        QFile::remove(out);
        return;
    }
    decoder = nullptr;
    if (exitCode != 0 || crashed) {
        QFile::remove(out);
        temporary.clear();
        return showMessage(damaged);
    }
    load(out, false);
}

void VideoPreview::showMessage(const QString& text) {
    if (surface) surface->showMessage(text);
    if (text.startsWith(QLatin1String("Preparing"))) return;
    stop();
    failureText = text;
    emit failed(text);
}

void VideoPreview::stop() {
    const bool wasActive = !url.isEmpty() || surface;
    url.clear();
    failureText.clear();
    if (surface) {
        QWidget* parent = surface->parentWidget();
        surface->disconnect(this);
        delete surface.data();
        if (parent) parent->update();
    }
    ++generation;
    loaded.clear();
    if (player) {
        player->pause();
        player->setSource({});
    }
    if (decoder) {
        // Its completion still arrives and, being stale, removes what it wrote.
        decoder->kill();
        decoder = nullptr;
    }
    if (!temporary.isEmpty()) QFile::remove(temporary);
    temporary.clear();
    source.reset();
    if (wasActive) emit changed();
}

bool VideoPreview::playing() const {
    return player && player->playbackState() == QMediaPlayer::PlayingState;
}

double VideoPreview::elapsed() const {
    return player && !loaded.isEmpty() ? seconds(player->position()) : 0;
}

double VideoPreview::duration() const {
    return player && !loaded.isEmpty() ? seconds(player->duration()) : 0;
}

void VideoPreview::togglePlayback() {
    if (!player || loaded.isEmpty()) return;
    if (playing()) {
        player->pause();
    } else {
        if (duration() > 0 && elapsed() >= duration() - 0.05) player->setPosition(0);
        player->play();
    }
    emit changed();
}

void VideoPreview::seek(double to) {
    const double length = duration();
    if (length <= 0) return;
    player->setPosition(qint64(std::llround(std::clamp(to, 0.0, length) * 1000.0)));
    emit changed();
}

} // namespace orvane
