#include "chrome/AuxiliaryWindow.h"

#include "chrome/TitleRow.h"
#include "kit/AuxiliaryStyle.h"
#include "kit/Palette.h"
#include "kit/Symbols.h"
#include "platform/PhysicalKeys.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QStyleOption>
#include <QToolButton>

namespace orvane {

AuxiliaryWindow::AuxiliaryWindow(QWidget* owner, const QString& title, const QString& name)
    : QWidget(owner, Qt::Window) {
    setAttribute(Qt::WA_DeleteOnClose);
    AuxiliaryStyle::apply(this);
    setWindowTitle(title);
    setAccessibleName(name);
}

QWidget* AuxiliaryWindow::titleRow(const QString& heading) {
    auto* row = new TitleRow(this);
    row->setFixedHeight(40);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(24, 0, 8, 0);
    auto* title = new QLabel(heading, row);
    QFont font = title->font();
    font.setPointSize(12);
    font.setBold(true);
    title->setFont(font);
    title->setStyleSheet(QStringLiteral("color: %1;").arg(Palette::ink().name(QColor::HexArgb)));
    auto* close = new QToolButton(row);
    close->setIcon(symbolIcon(QStringLiteral("xmark")));
    close->setIconSize(QSize(16, 16));
    close->setAutoRaise(true);
    close->setToolTip(QStringLiteral("Close · Escape"));
    close->setAccessibleName(QStringLiteral("Close"));
    close->setObjectName(QStringLiteral("closeWindowButton"));
    connect(close, &QToolButton::clicked, this, &QWidget::close);
    layout->addWidget(title);
    layout->addStretch(1);
    layout->addWidget(close);
    return row;
}

void AuxiliaryWindow::keyPressEvent(QKeyEvent* event) {
    if (physicalKey(*event) == PhysicalKey::Escape) {
        close();
        return;
    }
    QWidget::keyPressEvent(event);
}

// A plain QWidget draws its style sheet's background only when asked to.
void AuxiliaryWindow::paintEvent(QPaintEvent*) {
    QStyleOption option;
    option.initFrom(this);
    QPainter painter(this);
    style()->drawPrimitive(QStyle::PE_Widget, &option, &painter, this);
    AuxiliaryStyle::paintRim(painter, rect());
}

} // namespace orvane
