#include "media/WaveformPeaks.h"

#include <QProcess>
#include <cstdlib>
#include <thread>

namespace orvane::WaveformPeaks {

std::vector<float> fromSamples(const std::vector<qint16>& samples) {
    if (samples.empty()) return {};
    std::vector<float> peaks(count, 0.0f);
    const qint64 length = qint64(samples.size());
    for (qint64 i = 0; i < length; ++i) {
        const qint64 bucket = std::min<qint64>(i * count / length, count - 1);
        peaks[size_t(bucket)] =
            std::max(peaks[size_t(bucket)], std::abs(float(samples[size_t(i)])) / 32768.0f);
    }
    return peaks;
}

namespace {
// Every eighth sample of one stretch of the file, from `from` seconds for `length` seconds (all
// of it when `length` is 0).
std::vector<qint16> decodeStretch(const QString& ffmpeg, const QString& path, double from, double length,
                                  const std::function<bool()>& cancelled, bool& ok) {
    QStringList args{QStringLiteral("-nostdin"), QStringLiteral("-v"), QStringLiteral("error")};
    if (from > 0) args << QStringLiteral("-ss") << QString::number(from, 'f', 3);
    if (length > 0) args << QStringLiteral("-t") << QString::number(length, 'f', 3);
    // One channel: the pipe carries half as much, and a sound's shape is the same.
    args << QStringLiteral("-i") << path << QStringLiteral("-map") << QStringLiteral("0:a:0")
         << QStringLiteral("-ac") << QStringLiteral("1") << QStringLiteral("-f") << QStringLiteral("s16le")
         << QStringLiteral("-");
    QProcess process;
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(ffmpeg, args);
    std::vector<qint16> samples;
    ok = process.waitForStarted();
    quint64 seen = 0;
    QByteArray pending;
    while (ok && (process.state() != QProcess::NotRunning || process.bytesAvailable() > 0)) {
        if (cancelled()) {
            process.kill();
            process.waitForFinished();
            ok = false;
            break;
        }
        if (process.bytesAvailable() == 0) process.waitForReadyRead(100);
        pending += process.readAllStandardOutput();
        const qsizetype whole = pending.size() / 2;
        const auto* data = reinterpret_cast<const qint16*>(pending.constData());
        for (qsizetype i = (8 - qsizetype(seen % 8)) % 8; i < whole; i += 8)
            samples.push_back(data[i]);
        seen += quint64(whole);
        pending.remove(0, whole * 2);
    }
    ok = ok && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    return samples;
}

double lengthOf(const QString& ffmpeg, const QString& path) {
    QProcess probe;
    probe.start(ffmpeg.left(ffmpeg.lastIndexOf(u'/') + 1) + QStringLiteral("ffprobe"),
                {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-show_entries"),
                 QStringLiteral("format=duration"), QStringLiteral("-of"), QStringLiteral("csv=p=0"), path});
    if (!probe.waitForFinished(10000) || probe.exitCode() != 0) return 0;
    return probe.readAllStandardOutput().trimmed().toDouble();
}
} // namespace

std::vector<float> read(const QString& ffmpeg, const QString& path, const std::function<bool()>& cancelled) {
    // A long file is read as two halves at once, one on each core.
    const double length = lengthOf(ffmpeg, path);
    if (length < 30) {
        bool ok = false;
        auto samples = decodeStretch(ffmpeg, path, 0, 0, cancelled, ok);
        return ok ? fromSamples(samples) : std::vector<float>();
    }
    bool firstOk = false;
    bool secondOk = false;
    std::vector<qint16> second;
    std::thread other([&] { second = decodeStretch(ffmpeg, path, length / 2, 0, cancelled, secondOk); });
    auto first = decodeStretch(ffmpeg, path, 0, length / 2, cancelled, firstOk);
    other.join();
    if (!firstOk || !secondOk) return {};
    first.insert(first.end(), second.begin(), second.end());
    return fromSamples(first);
}

} // namespace orvane::WaveformPeaks
