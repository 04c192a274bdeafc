#include "media/WaveformSlider.h"

#include "core/Job.h"
#include "core/Jobs.h"
#include "kit/Palette.h"
#include "media/MediaDecoder.h"
#include "media/WaveformPeaks.h"

#include <QCoreApplication>
#include <QPainter>
#include <QPointer>
#include <QThreadPool>
#include <algorithm>
#include <atomic>
#include <memory>

namespace orvane {

WaveformSlider::WaveformSlider(Jobs& jobList, QObject* window, QWidget* parent)
    : QSlider(Qt::Horizontal, parent), decoderPath(MediaDecoder::executable()), jobs(jobList), owner(window) {
    setMinimumWidth(180);
    connect(this, &QSlider::sliderPressed, this, [this] { held = true; });
    connect(this, &QSlider::sliderReleased, this, [this] { held = false; });
}

WaveformSlider::~WaveformSlider() {
    if (cancelRunning) *cancelRunning = true;
}

void WaveformSlider::updateSource(const QString& path) {
    if (path == file) return;
    if (cancelRunning) *cancelRunning = true;
    file = path;
    peaks.clear();
    ++token;
    update();
    if (!file.isEmpty() && decoderPath) analyse();
}

void WaveformSlider::analyse() {
    const quint64 mine = token;
    Job* job = jobs.start(QStringLiteral("Reading the waveform"), owner, false);
    auto stop = std::make_shared<std::atomic_bool>(false);
    cancelRunning = stop;
    job->setCanceller([stop] { *stop = true; });
    QPointer<WaveformSlider> self(this);
    QPointer<Job> guard(job);
    const QString ffmpeg = *decoderPath;
    const QString path = file;
    QThreadPool::globalInstance()->start([self, guard, stop, mine, ffmpeg, path] {
        auto result = WaveformPeaks::read(ffmpeg, path, [stop] { return stop->load(); });
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [self, guard, mine, result = std::move(result)]() mutable {
                if (guard) guard->finish();
                if (!self || self->token != mine) return;
                self->peaks = std::move(result);
                self->update();
                emit self->peaksArrived();
            },
            Qt::QueuedConnection);
    });
}

void WaveformSlider::paintEvent(QPaintEvent* event) {
    if (!drawsWaveform || peaks.empty()) return QSlider::paintEvent(event);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF track = QRectF(rect()).adjusted(7, 2, -7, -2);
    const float loudest = std::max(*std::max_element(peaks.begin(), peaks.end()), 1e-6f);
    const double fraction = maximum() > minimum() ? double(value() - minimum()) / (maximum() - minimum()) : 0;
    const double knobX = track.left() + fraction * track.width();
    QColor quiet = Palette::muted();
    quiet.setAlphaF(0.4);
    // Two thirds of the buckets at most, so bars keep a gap between them.
    const int bars = std::clamp(int(track.width() / 3), 1, int(peaks.size()));
    const double step = track.width() / bars;
    for (int i = 0; i < bars; ++i) {
        const size_t from = size_t(i) * peaks.size() / size_t(bars);
        const size_t to = std::max(from + 1, size_t(i + 1) * peaks.size() / size_t(bars));
        const float peak = *std::max_element(peaks.begin() + qsizetype(from), peaks.begin() + qsizetype(to));
        const double h = std::max(1.0, double(peak / loudest) * track.height());
        const double x = track.left() + i * step;
        painter.fillRect(QRectF(x, track.center().y() - h / 2, std::max(1.0, step - 1), h),
                         x < knobX ? Palette::accent() : quiet);
    }
    painter.setPen(QPen(QColor(0, 0, 0, 60), 1));
    painter.setBrush(Qt::white);
    painter.drawRoundedRect(QRectF(knobX - 4, track.top(), 8, track.height()), 3, 3);
}

} // namespace orvane
