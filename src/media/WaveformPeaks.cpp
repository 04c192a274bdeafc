#include "media/WaveformPeaks.h"

#include <QProcess>
#include <cstdlib>

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

std::vector<float> read(const QString& ffmpeg, const QString& path, const std::function<bool()>& cancelled) {
    QProcess process;
    process.setStandardErrorFile(QProcess::nullDevice());
    // One channel: the pipe carries half as much, and a sound's shape is the same.
    process.start(ffmpeg, {QStringLiteral("-nostdin"), QStringLiteral("-v"), QStringLiteral("error"),
                           QStringLiteral("-i"), path, QStringLiteral("-map"), QStringLiteral("0:a:0"),
                           QStringLiteral("-ac"), QStringLiteral("1"), QStringLiteral("-f"),
                           QStringLiteral("s16le"), QStringLiteral("-")});
    if (!process.waitForStarted()) return {};
    std::vector<qint16> samples;
    quint64 seen = 0;
    QByteArray pending;
    while (process.state() != QProcess::NotRunning || process.bytesAvailable() > 0) {
        if (cancelled()) {
            process.kill();
            process.waitForFinished();
            return {};
        }
        if (process.bytesAvailable() == 0) process.waitForReadyRead(100);
        pending += process.readAllStandardOutput();
        const qsizetype whole = pending.size() / 2;
        const auto* data = reinterpret_cast<const qint16*>(pending.constData());
        // Every eighth frame, counted from the file's start.
        for (qsizetype i = (8 - qsizetype(seen % 8)) % 8; i < whole; i += 8)
            samples.push_back(data[i]);
        seen += quint64(whole);
        pending.remove(0, whole * 2);
    }
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) return {};
    return fromSamples(samples);
}

} // namespace orvane::WaveformPeaks
