#pragma once

#include <QString>
#include <functional>
#include <vector>

namespace orvane {

// The shape of a sound: the loudest sample of each of 512 equal stretches of the file, taken from
// every eighth frame of the decoded sound.
namespace WaveformPeaks {

constexpr int count = 512;

// Empty when the file cannot be decoded or holds no sound. `path` must be one a child process can
// be given (MediaPath::usable). Runs ffmpeg; call it off the main thread.
std::vector<float> read(const QString& ffmpeg, const QString& path, const std::function<bool()>& cancelled);

// The peaks of interleaved 16-bit samples already in memory.
std::vector<float> fromSamples(const std::vector<qint16>& everyEighth);

} // namespace WaveformPeaks

} // namespace orvane
