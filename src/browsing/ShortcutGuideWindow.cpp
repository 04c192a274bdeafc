#include "browsing/ShortcutGuideWindow.h"

#include "browsing/ExplorerShortcuts.h"
#include "browsing/Palette.h"
#include "platform/PhysicalKeys.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QScrollArea>
#include <QVBoxLayout>

namespace orvane {

namespace {

QLabel* label(const QString& text, const QColor& color, int size, QWidget* parent) {
    auto* item = new QLabel(text, parent);
    QFont font = item->font();
    font.setPointSize(size);
    item->setFont(font);
    QPalette colors = item->palette();
    colors.setColor(QPalette::WindowText, color);
    item->setPalette(colors);
    return item;
}

} // namespace

ShortcutGuideWindow::ShortcutGuideWindow(QWidget* owner) : QWidget(owner, Qt::Window) {
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral("Keyboard shortcuts — Orvane"));
    resize(650, 600);
    setMinimumSize(590, 380);
    auto* scroll = new QScrollArea(this);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setWidget(buildList());
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(scroll);
}

QWidget* ShortcutGuideWindow::buildList() {
    auto* list = new QWidget;
    auto* column = new QVBoxLayout(list);
    column->setContentsMargins(24, 20, 24, 20);
    column->setSpacing(6);
    QLabel* note = label(shortcutGuideNote(), Palette::muted(), 11, list);
    note->setWordWrap(true);
    column->addWidget(note);
    for (const ShortcutRow& row : explorerShortcutRows()) {
        if (row.isHeading()) {
            column->addSpacing(10);
            column->addWidget(label(row.keys, Palette::accent(), 11, list));
            auto* line = new QFrame(list);
            line->setFrameShape(QFrame::HLine);
            column->addWidget(line);
            continue;
        }
        auto* line = new QHBoxLayout;
        QLabel* keys = label(row.keys, Palette::ink(), 12, list);
        keys->setMinimumWidth(240);
        line->addWidget(keys);
        line->addWidget(label(row.description, Palette::muted(), 11, list), 1);
        column->addLayout(line);
    }
    column->addStretch(1);
    return list;
}

void ShortcutGuideWindow::keyPressEvent(QKeyEvent* event) {
    if (physicalKey(*event) == PhysicalKey::Escape) {
        close();
        return;
    }
    QWidget::keyPressEvent(event);
}

} // namespace orvane
