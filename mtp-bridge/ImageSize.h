#pragma once

#include <cstdint>

namespace orvane {

// Pixel size of a PNG, GIF or JPEG file from its header, as a phone's media store knows it; read from
// the start of the open file.
bool readImageSize(int fd, uint32_t& width, uint32_t& height);

} // namespace orvane
