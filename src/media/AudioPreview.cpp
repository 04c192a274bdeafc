#include "media/AudioPreview.h"

#include "media/MediaDecoder.h"
#include "media/MediaPath.h"
#include "media/MediaTypes.h"

#include <QAudioDevice>
#include <QAudioOutput>
#include <QDir>
#include <QFile>
#include <QMediaDevices>
#include <QMediaPlayer>
#include <QProcess>
#include <QUrl>
#include <QUuid>
#include <cmath>

namespace orvane {

namespace {
const QString undecodable = QStringLiteral("This audio format could not be decoded.");
const QString damaged =
    QStringLiteral("This file is damaged, protected, or uses an unsupported audio codec.");
const QString noDecoder = QStringLiteral("The additional audio decoder is unavailable.");
const QString noOutput = QStringLiteral("No sound output is available.");

double seconds(qint64 ms) {
    const double s = double(ms) / 1000.0;
    return std::isfinite(s) && s > 0 ? s : 0;
}
} // namespace

AudioPreview::AudioPreview(QObject* parent)
    : QObject(parent), decoderPath(MediaDecoder::executable()), temporaryFolder(QDir::tempPath()) {
    ticks.setInterval(200);
    connect(&ticks, &QTimer::timeout, this, &AudioPreview::update);
}

AudioPreview::~AudioPreview() {
    cancelDecode();
}

bool AudioPreview::supports(const QString& path) {
    return MediaTypes::isAudio(path);
}

void AudioPreview::ensurePlayer() {
    if (player) return;
    player = new QMediaPlayer(this);
    output = new QAudioOutput(this);
    player->setAudioOutput(output);
    connect(player, &QMediaPlayer::errorOccurred, this,
            [this](QMediaPlayer::Error, const QString& text) { playerFailed(text); });
    connect(player, &QMediaPlayer::mediaStatusChanged, this,
            [this](QMediaPlayer::MediaStatus status) { mediaStatus(status); });
    connect(player, &QMediaPlayer::durationChanged, this, &AudioPreview::update);
    connect(player, &QMediaPlayer::playbackStateChanged, this, &AudioPreview::update);
}

void AudioPreview::toggle(const QString& path, std::optional<QStringList> playlist) {
    if (beforeStart) beforeStart();
    if (playlist) {
        list.clear();
        for (const QString& file : *playlist)
            if (supports(file)) list << file;
    }
    ensurePlayer();
    if (path == url && failureText.isEmpty()) {
        intent = !intent;
        if (!decoding()) intent ? player->play() : player->pause();
        update();
        return;
    }
    cancelDecode();
    player->pause();
    url = path;
    failureText.clear();
    if (QMediaDevices::audioOutputs().isEmpty()) {
        player->setSource({});
        fail(noOutput);
        return;
    }
    intent = true;
    source = std::make_unique<MediaPath>(path);
    if (MediaTypes::platformRefusesAudio(path)) {
        player->setSource({});
        loaded.clear();
        decode();
    } else {
        load(source->usable(), true);
    }
    update();
}

void AudioPreview::load(const QString& file, bool fallback) {
    loaded = file;
    fallbackAllowed = fallback;
    player->setSource(QUrl::fromLocalFile(file));
    if (intent) player->play();
}

void AudioPreview::playerFailed(const QString& text) {
    if (url.isEmpty() || loaded.isEmpty() || player->source() != QUrl::fromLocalFile(loaded)) return;
    if (fallbackAllowed) {
        loaded.clear();
        player->setSource({});
        decode();
        update();
        return;
    }
    fail(text.isEmpty() ? undecodable : text);
}

void AudioPreview::mediaStatus(int status) {
    if (status == QMediaPlayer::InvalidMedia) {
        playerFailed(player->errorString());
    } else if (status == QMediaPlayer::EndOfMedia) {
        // The file stays current, paused at its start; the next one does not begin.
        intent = false;
        player->pause();
        player->setPosition(0);
        update();
    } else if (status == QMediaPlayer::BufferedMedia || status == QMediaPlayer::LoadedMedia) {
        update();
    }
}

void AudioPreview::decode() {
    if (!decoderPath) return fail(noDecoder);
    const quint64 generation = playbackID;
    const QString out = temporaryFolder + QStringLiteral("/PaneAudio-") +
                        QUuid::createUuid().toString(QUuid::WithoutBraces) + QStringLiteral(".wav");
    decodedFile = out;
    decoder = new QProcess(this);
    decoder->setStandardOutputFile(QProcess::nullDevice());
    decoder->setStandardErrorFile(QProcess::nullDevice());
    QProcess* process = decoder;
    connect(process, &QProcess::finished, this,
            [this, process, generation, out](int code, QProcess::ExitStatus st) {
                process->deleteLater();
                decoded(generation, out, code, st == QProcess::CrashExit);
            });
    connect(process, &QProcess::errorOccurred, this, [this, process, generation](QProcess::ProcessError e) {
        if (e != QProcess::FailedToStart || generation != playbackID) return;
        process->deleteLater();
        decoder = nullptr;
        fail(process->errorString());
    });
    process->start(*decoderPath, MediaDecoder::audioArguments(source ? source->usable() : url, out));
}

void AudioPreview::decoded(quint64 generation, const QString& out, int exitCode, bool crashed) {
    if (generation != playbackID) {
        QFile::remove(out);
        return;
    }
    decoder = nullptr;
    if (exitCode != 0 || crashed) {
        QFile::remove(out);
        decodedFile.clear();
        return fail(damaged);
    }
    load(out, false);
    update();
}

void AudioPreview::cancelDecode() {
    ++playbackID;
    if (decoder) {
        // Its completion still arrives and, being stale, removes what it wrote.
        decoder->kill();
        decoder = nullptr;
    }
    if (!decodedFile.isEmpty()) {
        if (player && loaded == decodedFile) {
            player->setSource({});
            loaded.clear();
        }
        QFile::remove(decodedFile);
        decodedFile.clear();
    }
}

void AudioPreview::stop() {
    cancelDecode();
    if (player) {
        player->pause();
        player->setSource({});
    }
    intent = false;
    loaded.clear();
    url.clear();
    list.clear();
    failureText.clear();
    source.reset();
    update();
}

void AudioPreview::fail(const QString& text) {
    intent = false;
    failureText = text;
    update();
    emit failed(text);
}

QString AudioPreview::waveformPath() const {
    return loaded;
}

double AudioPreview::elapsed() const {
    return player && !loaded.isEmpty() ? seconds(player->position()) : 0;
}

double AudioPreview::duration() const {
    return player && !loaded.isEmpty() ? seconds(player->duration()) : 0;
}

void AudioPreview::seek(double to) {
    const double length = duration();
    if (length <= 0) return;
    player->setPosition(qint64(std::llround(std::clamp(to, 0.0, length) * 1000.0)));
    update();
}

bool AudioPreview::canStep(int offset) const {
    const qsizetype index = url.isEmpty() ? -1 : list.indexOf(url);
    return index >= 0 && index + offset >= 0 && index + offset < list.size();
}

void AudioPreview::step(int offset) {
    if (!canStep(offset)) return;
    toggle(list[list.indexOf(url) + offset]);
}

void AudioPreview::update() {
    const bool running = player && player->playbackState() == QMediaPlayer::PlayingState;
    if (running != ticks.isActive()) running ? ticks.start() : ticks.stop();
    emit changed();
}

} // namespace orvane
