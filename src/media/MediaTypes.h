#pragma once

#include <QString>

namespace orvane {

// Which files the players take, by name and, for audio, by content.
namespace MediaTypes {

// By the extension or the type it names; cheap enough for every visible row.
bool isAudioByName(const QString& path);
// Also by the first bytes of the file, read by its exact name.
bool isAudio(const QString& path);
bool isVideo(const QString& path);
// Formats that go to ffmpeg before the platform player sees them. GStreamer reads nearly all, so
// here a file goes to ffmpeg only when the player itself refuses it.
bool platformRefusesAudio(const QString& path);
bool platformRefusesVideo(const QString& path);

} // namespace MediaTypes

} // namespace orvane
