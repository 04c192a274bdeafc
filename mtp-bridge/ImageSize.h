#pragma once

#include <cstdint>
#include <string>

namespace orvane {

// Pixel size of a PNG, GIF or JPEG file from its header, as a phone's media store knows it.
bool readImageSize(const std::string& path, uint32_t& width, uint32_t& height);

} // namespace orvane
