#include "kit/AuxiliaryStyle.h"

#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QWidget>

namespace orvane {

void AuxiliaryStyle::apply(QWidget* window) {
    window->setObjectName(QStringLiteral("auxiliaryWindow"));
    window->setWindowFlag(Qt::FramelessWindowHint, true);
    window->setAutoFillBackground(true);
    window->setStyleSheet(styleSheet());
}

void AuxiliaryStyle::centreOn(QWidget* window, const QWidget* owner) {
    const QWidget* host = owner ? owner->window() : nullptr;
    QScreen* screen = host && host->screen() ? host->screen() : QGuiApplication::primaryScreen();
    const QRect area = screen ? screen->availableGeometry() : QRect(0, 0, 1280, 800);
    const QRect around = host ? host->frameGeometry() : area;
    QRect frame(QPoint(0, 0), window->size());
    frame.moveCenter(around.center());
    // A window near the screen's edge still has its whole guide on the screen.
    frame.moveLeft(qBound(area.left(), frame.left(), qMax(area.left(), area.right() - frame.width())));
    frame.moveTop(qBound(area.top(), frame.top(), qMax(area.top(), area.bottom() - frame.height())));
    window->move(frame.topLeft());
}

void AuxiliaryStyle::paintRim(QPainter& painter, const QRect& rect) {
    painter.save();
    painter.setPen(QPen(QColor(255, 255, 255, 34), 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(rect.adjusted(0, 0, -1, -1));
    painter.restore();
}

QString AuxiliaryStyle::styleSheet() {
    return QStringLiteral(R"(
#auxiliaryWindow { background: rgb(30, 31, 40); color: rgb(240, 240, 240); }
#auxiliaryWindow QDialogButtonBox { dialogbuttonbox-buttons-have-icons: 0; }
#auxiliaryWindow QLabel { color: rgb(240, 240, 240); background: transparent; }
#auxiliaryWindow QLabel#qt_msgbox_label { font-weight: bold; min-width: 300px; }
#auxiliaryWindow QLabel#qt_msgbox_informativelabel { color: rgb(189, 189, 189); min-width: 340px; }
#auxiliaryWindow QPushButton { background: rgba(255, 255, 255, 16); border: 1px solid rgba(255, 255, 255, 30);
  border-radius: 6px; padding: 6px 18px; min-width: 72px; color: rgb(240, 240, 240); }
#auxiliaryWindow QPushButton:hover { background: rgba(255, 255, 255, 28); }
#auxiliaryWindow QPushButton:default { background: rgba(166, 161, 255, 85); border-color: rgba(166, 161, 255, 170); }
#auxiliaryWindow QPushButton:focus { border-color: rgba(166, 161, 255, 220); }
#auxiliaryWindow QPushButton#destructiveButton { background: rgba(220, 70, 60, 70); border-color: rgba(240, 110, 100, 150); }
#auxiliaryWindow QPushButton#destructiveButton:hover { background: rgba(220, 70, 60, 110); }
#auxiliaryWindow QLineEdit { background: rgba(255, 255, 255, 14); border: 1px solid rgba(255, 255, 255, 28);
  border-radius: 6px; padding: 4px 6px; color: rgb(240, 240, 240); }
#auxiliaryWindow QLineEdit:focus { border-color: rgba(166, 161, 255, 160); }
#auxiliaryWindow QScrollArea, #auxiliaryWindow QScrollArea > QWidget > QWidget { background: transparent; }
)");
}

} // namespace orvane
