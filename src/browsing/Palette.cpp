#include "browsing/Palette.h"

#include <QApplication>
#include <QPalette>
#include <QStyleFactory>

namespace orvane {

void Palette::apply(QApplication& app) {
    app.setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QPalette p;
    p.setColor(QPalette::Window, canvas());
    p.setColor(QPalette::Base, canvas());
    p.setColor(QPalette::AlternateBase, canvas().lighter(115));
    p.setColor(QPalette::Button, chrome());
    p.setColor(QPalette::WindowText, ink());
    p.setColor(QPalette::Text, ink());
    p.setColor(QPalette::ButtonText, ink());
    p.setColor(QPalette::PlaceholderText, muted());
    p.setColor(QPalette::ToolTipBase, chrome());
    p.setColor(QPalette::ToolTipText, ink());
    p.setColor(QPalette::Highlight, fromWhite(0.23));
    p.setColor(QPalette::HighlightedText, ink());
    p.setColor(QPalette::Link, accent());
    p.setColor(QPalette::Disabled, QPalette::Text, fromWhite(0.45));
    p.setColor(QPalette::Disabled, QPalette::ButtonText, fromWhite(0.45));
    p.setColor(QPalette::Disabled, QPalette::WindowText, fromWhite(0.45));
    app.setPalette(p);
}

} // namespace orvane
