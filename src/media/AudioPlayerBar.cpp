#include "media/AudioPlayerBar.h"

#include "core/BrowserWindow.h"
#include "core/Services.h"
#include "core/Settings.h"
#include "kit/ExplorerAlert.h"
#include "kit/Palette.h"
#include "kit/WindowWidgets.h"
#include "media/AudioPreview.h"
#include "media/VideoPreview.h"
#include "media/WaveformSlider.h"
#include "platform/NativePath.h"

#include <QApplication>
#include <QBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QToolButton>
#include <QVariantAnimation>

namespace orvane {

namespace {
constexpr int barHeight = 52;

// The bar's three symbols, drawn from paths so they stay sharp at any pixel ratio.
QIcon glyph(const char* name) {
    QPixmap pixmap(QSize(32, 32));
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Palette::ink());
    const QString which = QLatin1String(name);
    auto triangle = [&](double left, double right) {
        QPainterPath path;
        path.moveTo(left, 8);
        path.lineTo(right, 16);
        path.lineTo(left, 24);
        path.closeSubpath();
        painter.drawPath(path);
    };
    if (which == QLatin1String("pause")) {
        painter.drawRect(QRectF(10, 8, 4, 16));
        painter.drawRect(QRectF(18, 8, 4, 16));
    } else if (which == QLatin1String("play")) {
        triangle(10, 24);
    } else if (which == QLatin1String("forward")) {
        triangle(8, 20);
        painter.drawRect(QRectF(21, 8, 3, 16));
    } else {
        painter.translate(32, 0);
        painter.scale(-1, 1);
        triangle(8, 20);
        painter.drawRect(QRectF(21, 8, 3, 16));
    }
    return QIcon(pixmap);
}

// Named from the start: a hidden bar is still in the tree assistive tools walk.
QToolButton* barButton(QWidget* parent, const char* symbol, const QString& name) {
    auto* button = new QToolButton(parent);
    button->setAccessibleName(name);
    button->setToolTip(name);
    button->setAutoRaise(true);
    button->setFixedWidth(28);
    button->setIcon(glyph(symbol));
    return button;
}
} // namespace

AudioPlayerBar::AudioPlayerBar(BrowserWindow& window)
    : QWidget(window.widget()), w(window), audio(*window.services().audio()),
      video(*window.services().video()), title(new QLabel(this)),
      currentTime(new QLabel(QStringLiteral("0:00"), this)),
      totalTime(new QLabel(QStringLiteral("0:00"), this)),
      slider(new WaveformSlider(window.jobs(), window.widget(), this)),
      play(barButton(this, "play", QStringLiteral("Play audio"))),
      previous(barButton(this, "backward", QStringLiteral("Previous audio"))),
      next(barButton(this, "forward", QStringLiteral("Next audio"))), animation(new QVariantAnimation(this)) {
    setObjectName(QStringLiteral("playerBar"));
    setAccessibleName(QStringLiteral("Player"));
    QFont font = title->font();
    font.setPointSizeF(12);
    title->setFont(font);
    font.setPointSizeF(11);
    currentTime->setFont(font);
    totalTime->setFont(font);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(12, 4, 12, 4);
    row->addWidget(title, 0);
    row->addWidget(previous);
    row->addWidget(play);
    row->addWidget(next);
    row->addWidget(currentTime);
    row->addWidget(slider, 1);
    row->addWidget(totalTime);
    setMaximumHeight(0);
    hide();
    connect(animation, &QVariantAnimation::valueChanged, this,
            [this](const QVariant& v) { setMaximumHeight(v.toInt()); });
    connect(animation, &QVariantAnimation::finished, this, [this] { setVisible(open); });
    connect(slider, &QSlider::sliderMoved, this, &AudioPlayerBar::scrub);
    connect(slider, &QSlider::sliderReleased, this, &AudioPlayerBar::scrub);
    connect(play, &QToolButton::clicked, this, &AudioPlayerBar::toggle);
    connect(previous, &QToolButton::clicked, this, &AudioPlayerBar::back);
    connect(next, &QToolButton::clicked, this, &AudioPlayerBar::forward);
    connect(&audio, &AudioPreview::changed, this, &AudioPlayerBar::update);
    connect(&video, &VideoPreview::changed, this, &AudioPlayerBar::update);
    connect(&w.services().settings(), &Settings::waveformChanged, this, &AudioPlayerBar::update);
    connect(&audio, &AudioPreview::failed, this,
            [this](const QString& text) { tellFailure(QStringLiteral("Cannot preview audio"), text); });
    connect(&video, &VideoPreview::failed, this,
            [this](const QString& text) { tellFailure(QStringLiteral("Cannot preview video"), text); });
    // At the window's foot, just above the status row.
    QWidget* statusRow = w.widgets().status->parentWidget();
    if (auto* column = qobject_cast<QBoxLayout*>(statusRow->parentWidget()->layout()))
        column->insertWidget(column->indexOf(statusRow), this);
    update();
}

QString AudioPlayerBar::time(double seconds) {
    const qint64 whole = seconds > 0 && std::isfinite(seconds) ? qint64(seconds) : 0;
    return QString::asprintf("%lld:%02lld", whole / 60, whole % 60);
}

bool AudioPlayerBar::videoIsSubject() const {
    return !video.current().isEmpty();
}

void AudioPlayerBar::update() {
    const bool isVideo = videoIsSubject();
    const QString& path = isVideo ? video.current() : audio.current();
    setExpanded(!path.isEmpty());
    if (path.isEmpty()) return;
    const double elapsed = isVideo ? video.elapsed() : audio.elapsed();
    const double duration = isVideo ? video.duration() : audio.duration();
    const bool playing = isVideo ? video.playing() : audio.playing();
    const QString name = NativePath::display(path.section(u'/', -1));
    title->setText(name.contains(u'.') ? name.section(u'.', 0, -2) : name);
    title->setToolTip(name);
    currentTime->setText(time(elapsed));
    totalTime->setText(time(duration));
    slider->setAccessibleName(isVideo ? QStringLiteral("Video timeline") : QStringLiteral("Audio timeline"));
    const bool waveform = !isVideo && w.services().settings().showsWaveform();
    slider->drawsWaveform = waveform;
    slider->updateSource(waveform ? audio.waveformPath() : QString());
    slider->setMaximum(qMax(1, int(duration * 1000)));
    if (!slider->scrubbing()) slider->setValue(int(elapsed * 1000));
    slider->setEnabled(duration > 0);
    play->setIcon(glyph(playing ? "pause" : "play"));
    const QString playText = (playing ? QStringLiteral("Pause ") : QStringLiteral("Play ")) +
                             (isVideo ? QStringLiteral("video") : QStringLiteral("audio"));
    play->setToolTip(playText);
    play->setAccessibleName(playText);
    previous->setEnabled(isVideo ? duration > 0 : audio.canStep(-1));
    next->setEnabled(isVideo ? duration > 0 : audio.canStep(1));
    const QString back = isVideo ? QStringLiteral("Back 10 seconds") : QStringLiteral("Previous audio");
    const QString ahead = isVideo ? QStringLiteral("Forward 10 seconds") : QStringLiteral("Next audio");
    previous->setToolTip(back);
    previous->setAccessibleName(back);
    next->setToolTip(ahead);
    next->setAccessibleName(ahead);
}

void AudioPlayerBar::setExpanded(bool value) {
    if (value == open) return;
    open = value;
    animation->stop();
    if (open) show();
    animation->setStartValue(maximumHeight());
    animation->setEndValue(open ? barHeight : 0);
    animation->setDuration(open ? 220 : 160);
    animation->setEasingCurve(QEasingCurve::OutCubic);
    animation->start();
}

void AudioPlayerBar::scrub() {
    const double to = slider->value() / 1000.0;
    videoIsSubject() ? video.seek(to) : audio.seek(to);
}

void AudioPlayerBar::toggle() {
    if (videoIsSubject()) return video.togglePlayback();
    if (!audio.current().isEmpty()) audio.toggle(audio.current());
}

void AudioPlayerBar::back() {
    videoIsSubject() ? video.seek(video.elapsed() - 10) : audio.step(-1);
}

void AudioPlayerBar::forward() {
    videoIsSubject() ? video.seek(video.elapsed() + 10) : audio.step(1);
}

// Only the window the person works in tells of it, and never over an alert already open.
void AudioPlayerBar::tellFailure(const QString& kind, const QString& text) {
    if (QApplication::activeWindow() != w.widget()->window() || w.lastAlert()) return;
    w.showError(kind, text);
}

} // namespace orvane
