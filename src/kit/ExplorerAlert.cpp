#include "kit/ExplorerAlert.h"

#include "kit/AuxiliaryStyle.h"
#include "kit/Symbols.h"

#include <QPainter>
#include <QPushButton>
#include <QStyle>

namespace orvane {

namespace {
const QColor warningColor(240, 180, 90);
const QColor dangerColor(240, 110, 100);
} // namespace

ExplorerAlert::ExplorerAlert(Kind kind, const QString& title, const QString& detail, QWidget* parent)
    : QMessageBox(NoIcon, title, title, NoButton, parent) {
    AuxiliaryStyle::apply(this);
    setInformativeText(detail);
    setAccessibleName(title);
    setAccessibleDescription(detail);
    if (kind == Kind::Error) {
        setSymbol(QStringLiteral("exclamationmark.triangle"), warningColor);
        setDefaultButton(addButton(Ok));
    } else if (kind == Kind::Destructive) {
        setSymbol(QStringLiteral("exclamationmark.triangle"), dangerColor);
    }
}

void ExplorerAlert::setSymbol(const QString& symbol, const QColor& color) {
    const qreal ratio = parentWidget() ? parentWidget()->devicePixelRatioF() : 1.0;
    const QIcon icon = symbolIcon(symbol, color);
    if (!icon.isNull()) setIconPixmap(icon.pixmap(QSize(36, 36), ratio));
}

ExplorerAlert* ExplorerAlert::showError(QWidget* parent, const QString& title, const QString& detail) {
    auto* box = new ExplorerAlert(Kind::Error, title, detail, parent);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setWindowModality(Qt::WindowModal);
    // A message box remakes its window flags when its modality changes.
    box->setWindowFlag(Qt::FramelessWindowHint, true);
    box->open();
    return box;
}

bool ExplorerAlert::confirm(QWidget* parent, Kind kind, const QString& message, const QString& info,
                            const QString& accept, const QString& symbol) {
    ExplorerAlert box(kind, message, info, parent);
    if (kind != Kind::Destructive) box.setSymbol(symbol, Palette::ink());
    QPushButton* yes = box.addButton(accept, kind == Kind::Destructive ? DestructiveRole : AcceptRole);
    QPushButton* no = box.addButton(QStringLiteral("Cancel"), RejectRole);
    if (kind == Kind::Destructive) {
        yes->setObjectName(QStringLiteral("destructiveButton"));
        // Its look was settled when it was made; the name asks for another.
        yes->style()->unpolish(yes);
        yes->style()->polish(yes);
    }
    box.setDefaultButton(kind == Kind::Destructive ? no : yes);
    box.setEscapeButton(no);
    box.exec();
    return box.clickedButton() == yes;
}

void ExplorerAlert::showEvent(QShowEvent* event) {
    QMessageBox::showEvent(event);
    AuxiliaryStyle::centreOn(this, parentWidget());
}

void ExplorerAlert::paintEvent(QPaintEvent* event) {
    QMessageBox::paintEvent(event);
    QPainter painter(this);
    AuxiliaryStyle::paintRim(painter, rect());
}

} // namespace orvane
