#include "media/VideoSize.h"

#include "platform/NativePath.h"

#include <QElapsedTimer>
#include <cmath>

extern "C" {
#include <libavformat/avformat.h>
#include <libavutil/display.h>
}

namespace orvane {

namespace {

// A file that makes the demuxer wait (a stalled mount) gives up rather than holding a reader.
int tooLong(void* opaque) {
    return static_cast<QElapsedTimer*>(opaque)->hasExpired(5000) ? 1 : 0;
}

bool quarterTurned(const AVStream* stream) {
    const uint8_t* matrix = av_stream_get_side_data(stream, AV_PKT_DATA_DISPLAYMATRIX, nullptr);
    if (!matrix) return false;
    const double degrees = av_display_rotation_get(reinterpret_cast<const int32_t*>(matrix));
    return std::isfinite(degrees) && std::lround(std::fabs(degrees)) % 180 == 90;
}

} // namespace

std::optional<QSize> VideoSize::read(const QString& path) {
    av_log_set_level(AV_LOG_QUIET);
    QElapsedTimer clock;
    clock.start();
    AVFormatContext* context = avformat_alloc_context();
    if (!context) return std::nullopt;
    context->interrupt_callback = {tooLong, &clock};
    // "file:" so a name with a colon is never taken for another protocol.
    const QByteArray url = "file:" + NativePath::encode(path);
    if (avformat_open_input(&context, url.constData(), nullptr, nullptr) < 0) return std::nullopt;
    int index = av_find_best_stream(context, AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
    if (index >= 0 && context->streams[index]->codecpar->width <= 0 &&
        avformat_find_stream_info(context, nullptr) >= 0)
        index = av_find_best_stream(context, AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
    std::optional<QSize> size;
    if (index >= 0) {
        const AVStream* stream = context->streams[index];
        const QSize natural(stream->codecpar->width, stream->codecpar->height);
        if (natural.width() > 0 && natural.height() > 0)
            size = quarterTurned(stream) ? natural.transposed() : natural;
    }
    avformat_close_input(&context);
    return size;
}

} // namespace orvane
