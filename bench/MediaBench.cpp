#include "BenchCommand.h"

#include "media/AudioPreview.h"
#include "media/MediaDecoder.h"
#include "media/MediaPath.h"
#include "media/WaveformPeaks.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

using namespace orvane;

namespace {

QString quoted(const QString& path) {
    QString text = path;
    return u'\'' + text.replace(u'\'', QStringLiteral("'\\''")) + u'\'';
}

// The peaks of FILE against ffmpeg decoding it to nothing, the floor for any reading of the sound.
int waveform(const QStringList& args) {
    if (args.size() != 1 || !MediaDecoder::executable()) return 2;
    const MediaPath file(args[0]);
    const QString ffmpeg = *MediaDecoder::executable();
    QElapsedTimer timer;
    timer.start();
    const auto peaks = WaveformPeaks::read(ffmpeg, file.usable(), [] { return false; });
    const double ms = double(timer.nsecsElapsed()) / 1e6;
    const double decode = timeShell(quoted(ffmpeg) + QStringLiteral(" -nostdin -v error -i ") +
                                    quoted(file.usable()) + QStringLiteral(" -f null -"));
    benchOut() << "peaks " << peaks.size() << "\nwaveform ms " << ms << "\ndecode ms " << decode << Qt::endl;
    return peaks.empty() ? 1 : 0;
}

// Waits until the player's position moves, or `limit` ms.
double untilItPlays(AudioPreview& preview, const QString& file) {
    QElapsedTimer timer;
    timer.start();
    preview.toggle(file);
    QEventLoop loop;
    QObject::connect(&preview, &AudioPreview::changed, &loop, [&] {
        if (preview.elapsed() > 0 || !preview.failure().isEmpty()) loop.quit();
    });
    QTimer::singleShot(20000, &loop, &QEventLoop::quit);
    loop.exec();
    return preview.elapsed() > 0 ? double(timer.nsecsElapsed()) / 1e6 : -1;
}

// From the play command to the player reporting that sound runs, in a warm process: the file is
// played once first, so the platform's plugins are loaded.
int audioStart(const QStringList& args) {
    if (args.size() != 1) return 2;
    AudioPreview preview;
    const double cold = untilItPlays(preview, args[0]);
    preview.stop();
    const double ms = untilItPlays(preview, args[0]);
    benchOut() << "cold start ms " << cold << "\nstart ms " << ms << "\ndecoded "
               << (preview.waveformPath().contains(QLatin1String("/PaneAudio-"))) << Qt::endl;
    if (!preview.failure().isEmpty()) benchOut() << "failure " << preview.failure() << Qt::endl;
    preview.stop();
    return ms < 0 ? 1 : 0;
}

} // namespace

ORVANE_BENCH_COMMAND(waveform, "waveform", "FILE", waveform)
ORVANE_BENCH_COMMAND(audioStart, "audio-start", "FILE", audioStart)
