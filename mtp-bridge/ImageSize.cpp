#include "ImageSize.h"

#include <cstdio>
#include <cstring>
#include <memory>
#include <unistd.h>

namespace orvane {

namespace {
using File = std::unique_ptr<FILE, int (*)(FILE*)>;

uint32_t bigEndian(const unsigned char* p, int bytes) {
    uint32_t value = 0;
    for (int i = 0; i < bytes; ++i)
        value = value << 8 | p[i];
    return value;
}

bool isFrameMarker(int marker) {
    return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

// Walks the marker segments up to the first start of frame.
bool jpegSize(FILE* f, uint32_t& width, uint32_t& height) {
    unsigned char head[4];
    if (std::fseek(f, 2, SEEK_SET) != 0) return false;
    while (std::fread(head, 1, 4, f) == 4) {
        if (head[0] != 0xFF) return false;
        const uint32_t length = bigEndian(head + 2, 2);
        if (isFrameMarker(head[1])) {
            unsigned char frame[5];
            if (std::fread(frame, 1, 5, f) != 5) return false;
            height = bigEndian(frame + 1, 2);
            width = bigEndian(frame + 3, 2);
            return width > 0 && height > 0;
        }
        if (length < 2 || std::fseek(f, long(length) - 2, SEEK_CUR) != 0) return false;
    }
    return false;
}
} // namespace

bool readImageSize(int fd, uint32_t& width, uint32_t& height) {
    const int own = ::dup(fd);
    if (own >= 0) ::lseek(own, 0, SEEK_SET);
    File f(own >= 0 ? ::fdopen(own, "rb") : nullptr, &std::fclose);
    if (!f && own >= 0) ::close(own);
    unsigned char head[26] = {};
    if (!f || std::fread(head, 1, sizeof head, f.get()) < 10) return false;
    if (std::memcmp(head, "\x89PNG\r\n\x1a\n", 8) == 0) {
        width = bigEndian(head + 16, 4);
        height = bigEndian(head + 20, 4);
        return width > 0 && height > 0;
    }
    if (std::memcmp(head, "GIF8", 4) == 0) {
        width = uint32_t(head[6] | head[7] << 8);
        height = uint32_t(head[8] | head[9] << 8);
        return width > 0 && height > 0;
    }
    if (head[0] == 0xFF && head[1] == 0xD8) return jpegSize(f.get(), width, height);
    return false;
}

} // namespace orvane
