#pragma once

#include <QObject>
#include <QStringList>
#include <QTimer>
#include <functional>
#include <memory>
#include <optional>

class QAudioOutput;
class QMediaPlayer;
class QProcess;

namespace orvane {

class MediaPath;

// The one audio player of the process: one file at a time, whichever window started it. What the
// platform player refuses is decoded by ffmpeg to a temporary WAV file and played from there.
// Paths are in NativePath form throughout.
class AudioPreview : public QObject {
    Q_OBJECT
public:
    explicit AudioPreview(QObject* parent = nullptr);
    ~AudioPreview() override;

    static bool supports(const QString& path);

    // Plays, pauses or resumes. A playlist replaces the stored one (its audio files only).
    void toggle(const QString& path, std::optional<QStringList> playlist = std::nullopt);
    void stop();
    void seek(double seconds);
    void step(int offset);
    bool canStep(int offset) const;

    // The current file, also while paused, decoding or failed; empty when idle.
    const QString& current() const { return url; }
    // The person's intent: true also while decoding.
    bool playing() const { return intent; }
    bool decoding() const { return decoder != nullptr; }
    // What the waveform reads: the decoded file while one plays, else the current file.
    QString waveformPath() const;
    double elapsed() const;
    double duration() const;
    const QStringList& playlist() const { return list; }
    // Why the current file does not play; empty while nothing failed.
    const QString& failure() const { return failureText; }

    // Stops the other player before this one starts.
    std::function<void()> beforeStart;
    // The decoder and where its output goes; tests choose their own.
    std::optional<QString> decoderPath;
    QString temporaryFolder;

signals:
    // Every state change and, while playing, five times a second.
    void changed();
    // A failure the person should be told of, once.
    void failed(const QString& text);

private:
    void ensurePlayer();
    void load(const QString& file, bool fallback);
    void decode();
    void decoded(quint64 generation, const QString& output, int exitCode, bool crashed);
    void cancelDecode();
    void playerFailed(const QString& text);
    void mediaStatus(int status);
    void fail(const QString& text);
    void update();

    QMediaPlayer* player = nullptr;
    QAudioOutput* output = nullptr;
    QProcess* decoder = nullptr;
    QString decodedFile;
    std::unique_ptr<MediaPath> source;
    QString loaded;
    bool fallbackAllowed = false;
    quint64 playbackID = 0;
    QStringList list;
    QString url;
    bool intent = false;
    QString failureText;
    QTimer ticks;
};

} // namespace orvane
