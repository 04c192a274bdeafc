#include "chrome/ShortcutGuideWindow.h"

#include "core/ShortcutRows.h"
#include "kit/AuxiliaryStyle.h"
#include "kit/Palette.h"

#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <QScrollArea>
#include <QSizeGrip>
#include <QVBoxLayout>

namespace orvane {

namespace {

QLabel* label(const QString& text, const QColor& color, int size, QWidget* parent) {
    auto* item = new QLabel(text, parent);
    QFont font = item->font();
    font.setPointSize(size);
    item->setFont(font);
    // The window's style sheet colours labels; this one keeps its own.
    item->setStyleSheet(QStringLiteral("color: %1;").arg(color.name(QColor::HexArgb)));
    return item;
}

QColor faded(QColor color) {
    color.setAlphaF(0.5f);
    return color;
}

} // namespace

ShortcutGuideWindow::ShortcutGuideWindow(QWidget* owner, std::function<bool(const QString&)> available)
    : AuxiliaryWindow(owner, QStringLiteral("Keyboard shortcuts — Orvane"),
                      QStringLiteral("Keyboard shortcuts")),
      available(std::move(available)) {
    resize(650, 600);
    setMinimumSize(590, 380);
    scroll = new QScrollArea(this);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    // Lines wrap rather than run off to the side.
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setWidget(buildList());
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(1, 1, 1, 1);
    layout->setSpacing(0);
    layout->addWidget(titleRow(QStringLiteral("Keyboard shortcuts")));
    layout->addWidget(scroll, 1);
    layout->addWidget(new QSizeGrip(this), 0, Qt::AlignRight | Qt::AlignBottom);
    AuxiliaryStyle::centreOn(this, owner);
}

QWidget* ShortcutGuideWindow::buildList() {
    auto* list = new QWidget;
    auto* grid = new QGridLayout(list);
    grid->setContentsMargins(24, 16, 24, 20);
    grid->setHorizontalSpacing(18);
    grid->setVerticalSpacing(6);
    grid->setColumnStretch(1, 1);
    QLabel* note = label(shortcutGuideNote(), Palette::muted(), 11, list);
    note->setWordWrap(true);
    int line = 0;
    grid->addWidget(note, line++, 0, 1, 2);
    for (const ShortcutRow& row : explorerShortcutRows()) {
        if (row.isHeading()) {
            grid->addItem(new QSpacerItem(0, 8), line++, 0);
            grid->addWidget(label(row.keys, Palette::accent(), 11, list), line++, 0, 1, 2);
            auto* rule = new QFrame(list);
            rule->setFixedHeight(1);
            rule->setStyleSheet(QStringLiteral("background: rgba(255, 255, 255, 24);"));
            grid->addWidget(rule, line++, 0, 1, 2);
            continue;
        }
        const bool ready = row.command.isEmpty() || !available || available(row.command);
        QLabel* keys = label(row.keys, ready ? Palette::ink() : faded(Palette::ink()), 12, list);
        QLabel* description =
            label(row.description, ready ? Palette::muted() : faded(Palette::muted()), 11, list);
        description->setWordWrap(true);
        grid->addWidget(keys, line, 0, Qt::AlignTop);
        if (ready) {
            grid->addWidget(description, line++, 1);
            continue;
        }
        description->setAccessibleName(row.description + QStringLiteral(", ") + unavailableText().toLower());
        auto* cell = new QVBoxLayout;
        cell->setSpacing(0);
        cell->addWidget(description);
        cell->addWidget(label(unavailableText(), faded(Palette::accent()), 10, list));
        grid->addLayout(cell, line++, 1);
    }
    grid->setRowStretch(line, 1);
    return list;
}

} // namespace orvane
