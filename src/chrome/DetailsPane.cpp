#include "chrome/DetailsPane.h"

#include "core/EntryText.h"
#include "kit/Palette.h"
#include "kit/Symbols.h"
#include "views/FileIcons.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QScrollArea>
#include <QToolButton>
#include <QVBoxLayout>

namespace orvane {

namespace {
QLabel* textLabel(QWidget* parent, int pointSize, bool mutedText) {
    auto* label = new QLabel(parent);
    QFont font = label->font();
    font.setPointSize(pointSize);
    label->setFont(font);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    if (mutedText) label->setForegroundRole(QPalette::PlaceholderText);
    return label;
}
} // namespace

DetailsPane::DetailsPane(QWidget* parent) : QWidget(parent) {
    setMinimumWidth(260);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(16, 10, 16, 16);
    auto* header = new QHBoxLayout;
    auto* heading = textLabel(this, 12, true);
    heading->setText(QStringLiteral("Details"));
    auto* close = new QToolButton(this);
    close->setIcon(symbolIcon(QStringLiteral("xmark"), Palette::muted()));
    close->setToolTip(QStringLiteral("Close details pane"));
    close->setAccessibleName(QStringLiteral("Close details pane"));
    close->setAutoRaise(true);
    connect(close, &QToolButton::clicked, this, &DetailsPane::closeRequested);
    header->addWidget(heading);
    header->addStretch(1);
    header->addWidget(close);
    column->addLayout(header);
    // A short window scrolls the facts rather than cutting off the last of them.
    auto* scroll = new QScrollArea(this);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setStyleSheet(
        QStringLiteral("QScrollArea, QScrollArea > QWidget > QWidget { background: transparent; }"));
    auto* body = new QWidget(scroll);
    auto* facts = new QVBoxLayout(body);
    facts->setContentsMargins(0, 0, 0, 0);
    image = new QLabel(body);
    image->setFixedHeight(70);
    image->setAlignment(Qt::AlignCenter);
    titleLabel = textLabel(body, 14, false);
    pathLabel = textLabel(body, 11, true);
    metaLabel = textLabel(body, 12, false);
    for (QWidget* w : {static_cast<QWidget*>(image), static_cast<QWidget*>(titleLabel),
                       static_cast<QWidget*>(pathLabel), static_cast<QWidget*>(metaLabel)})
        facts->addWidget(w);
    facts->addStretch(1);
    scroll->setWidget(body);
    column->addWidget(scroll, 1);
}

void DetailsPane::showItems(const std::vector<Entry>& items, const QString& currentPath,
                            const QString& folder) {
    if (items.size() == 1) {
        const Entry& item = items.front();
        titleLabel->setText(item.isPhone() ? item.name() : folderName(item.url()));
        pathLabel->setText(item.isPhone() ? item.name() : item.location);
        image->setPixmap(FileIcons::shared().icon(item).pixmap(64, 64));
        QString text =
            QStringLiteral("Type\n") + item.kind + QStringLiteral("\n\nModified\n") + dateText(item.modified);
        if (!item.directory) text += QStringLiteral("\n\nSize\n") + byteCountText(item.size);
        if (!folder.isEmpty()) text += QStringLiteral("\n\nFolder\n") + folder;
        metaLabel->setText(text);
        return;
    }
    qint64 total = 0;
    for (const Entry& item : items)
        if (!item.directory) total += item.size;
    titleLabel->setText(QString::number(items.size()) + QStringLiteral(" items selected"));
    pathLabel->setText(currentPath);
    image->setPixmap(symbolIcon(QStringLiteral("doc.on.doc")).pixmap(64, 64));
    metaLabel->setText(QStringLiteral("Files total\n") + byteCountText(total));
}

QString DetailsPane::title() const {
    return titleLabel->text();
}

QString DetailsPane::meta() const {
    return metaLabel->text();
}

} // namespace orvane
