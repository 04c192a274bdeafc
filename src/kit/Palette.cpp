#include "kit/Palette.h"

#include "kit/GlassSurfaces.h"

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
    p.setColor(QPalette::Active, QPalette::Highlight, selection());
    p.setColor(QPalette::Inactive, QPalette::Highlight, selectionInactive());
    p.setColor(QPalette::HighlightedText, ink());
    p.setColor(QPalette::Link, accent());
    p.setColor(QPalette::Disabled, QPalette::Text, fromWhite(0.45));
    p.setColor(QPalette::Disabled, QPalette::ButtonText, fromWhite(0.45));
    p.setColor(QPalette::Disabled, QPalette::WindowText, fromWhite(0.45));
    app.setPalette(p);
    app.setStyleSheet(styleSheet());
}

QString Palette::styleSheet() {
    return GlassSurfaces::styleSheet() + QStringLiteral(R"(
QDialogButtonBox { dialogbuttonbox-buttons-have-icons: 0; }
#navigationRow, #actionRow { border-bottom: 1px solid rgba(255, 255, 255, 10); }
#navigationPane #placesTable { background: transparent; }
#placesTable QToolButton { padding: 0; border-radius: 4px; }
#detailsPane, #previewPane { border-left: 1px solid rgba(255, 255, 255, 12); }
#statusRow { color: rgb(189, 189, 189); }
QToolButton { border: none; border-radius: 6px; padding: 4px 7px; color: rgb(240, 240, 240); }
QToolButton:pressed { background: rgba(166, 161, 255, 50); }
QToolButton:disabled { color: rgba(240, 240, 240, 90); }
QToolButton::menu-indicator { image: none; width: 0; }
#closeWindowButton:hover { background: rgb(196, 43, 28); }
#pathBox, #searchField, #pathBox QLineEdit {
  border: 1px solid rgba(255, 255, 255, 18); border-radius: 10px;
  color: rgb(240, 240, 240); padding: 0 6px; }
#searchField:focus, #pathBox QLineEdit:focus { border: 1px solid rgba(166, 161, 255, 160); }
#pathBox QToolButton { padding: 3px 5px; }
QLineEdit { selection-background-color: rgba(166, 161, 255, 110); }
QMenu { border: 1px solid rgba(255, 255, 255, 28); padding: 5px; }
QMenu::item { padding: 6px 26px 6px 22px; border-radius: 5px; color: rgb(240, 240, 240); }
QMenu::item:disabled { color: rgba(240, 240, 240, 90); }
QMenu::separator { height: 1px; background: rgba(255, 255, 255, 20); margin: 4px 8px; }
QMenuBar { background: transparent; color: rgb(189, 189, 189); }
QMenuBar::item:selected { background: rgba(255, 255, 255, 22); }
QTableView { background: transparent; border: none; outline: 0; }
QHeaderView::section { color: rgb(189, 189, 189); border: none;
  border-right: 1px solid rgba(255, 255, 255, 25); padding-left: 8px; height: 34px; }
QSplitter::handle { background: rgba(255, 255, 255, 14); }
QScrollBar:vertical { background: transparent; width: 10px; margin: 2px; }
QScrollBar::handle:vertical { background: rgba(255, 255, 255, 45); border-radius: 3px; min-height: 30px; }
QScrollBar:horizontal { background: transparent; height: 10px; margin: 2px; }
QScrollBar::handle:horizontal { background: rgba(255, 255, 255, 45); border-radius: 3px; min-width: 30px; }
QScrollBar::add-line, QScrollBar::sub-line { width: 0; height: 0; }
QToolTip { background: rgb(30, 31, 40); color: rgb(240, 240, 240); border: 1px solid rgba(255, 255, 255, 28); }
QMessageBox { background: rgb(30, 31, 40); }
)");
}

} // namespace orvane
