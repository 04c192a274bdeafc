#pragma once

#include <QString>
#include <QStringList>
#include <optional>

namespace orvane {

// The external ffmpeg that decodes what the platform player refuses, shared by audio and video.
namespace MediaDecoder {

// Looked up once: beside the program, then on the PATH (and the usual Mac places on a Mac).
const std::optional<QString>& executable();
// The lookup itself, over a folder and a PATH value of the caller's choice.
std::optional<QString> find(const QString& programFolder, const QString& pathVariable);

// Audio to 16-bit PCM in a WAV file, which the platform player always reads.
QStringList audioArguments(const QString& input, const QString& output);
// Video to an MPEG-4 file with AAC sound; the sound track is optional, the size rounded to even.
QStringList videoArguments(const QString& input, const QString& output);

} // namespace MediaDecoder

} // namespace orvane
