#include "media/InlineVideoSurface.h"

#include "kit/BusySpinner.h"

#include <QPainter>
#include <QPainterPath>

namespace orvane {

InlineVideoSurface::InlineVideoSurface(QWidget* parent) : QWidget(parent), spinner(new BusySpinner(this)) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    setAccessibleName(QStringLiteral("Video"));
    spinner->hide();
}

void InlineVideoSurface::setFrame(const QImage& image) {
    picture = image;
    update();
}

void InlineVideoSurface::showMessage(const QString& text) {
    setToolTip(text);
    spinner->setVisible(!text.isEmpty());
    text.isEmpty() ? spinner->stop() : spinner->start();
}

void InlineVideoSurface::resizeEvent(QResizeEvent*) {
    spinner->setGeometry(QRect(QPoint(0, 0), QSize(16, 16)).translated(rect().center() - QPoint(8, 8)));
}

void InlineVideoSurface::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath clip;
    clip.addRoundedRect(QRectF(rect()), 6, 6);
    painter.setClipPath(clip);
    painter.fillRect(rect(), Qt::black);
    if (picture.isNull()) return;
    // Aspect fit: the whole picture, bars where the shapes differ.
    const QSize fitted = picture.size().scaled(size(), Qt::KeepAspectRatio);
    const QRect target(QPoint((width() - fitted.width()) / 2, (height() - fitted.height()) / 2), fitted);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(target, picture);
}

} // namespace orvane
