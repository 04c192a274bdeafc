#include "chrome/TitleRow.h"

#include <QMouseEvent>
#include <QPainter>
#include <QStyleOption>
#include <QWindow>

namespace orvane {

TitleRow::TitleRow(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("titleRow"));
    setFixedHeight(44);
}

void TitleRow::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && window()->windowHandle()) {
        window()->windowHandle()->startSystemMove();
        event->accept();
        return;
    }
    QWidget::mousePressEvent(event);
}

void TitleRow::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) emit zoomRequested();
}

// Lets the style sheet's background reach a plain QWidget subclass.
void TitleRow::paintEvent(QPaintEvent*) {
    QStyleOption option;
    option.initFrom(this);
    QPainter painter(this);
    style()->drawPrimitive(QStyle::PE_Widget, &option, &painter, this);
}

} // namespace orvane
