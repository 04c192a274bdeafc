#include "preview/PreviewPane.h"

#include "kit/Palette.h"
#include "kit/Symbols.h"
#include "preview/PreviewLoader.h"
#include "preview/PreviewView.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

namespace orvane {

namespace {
const QSize pictureBound(1200, 1200);

QLabel* lineLabel(QWidget* parent, bool mutedText) {
    auto* label = new QLabel(parent);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    if (mutedText) label->setForegroundRole(QPalette::PlaceholderText);
    return label;
}
} // namespace

PreviewPane::PreviewPane(QWidget* parent)
    : QWidget(parent), loader(new PreviewLoader(this)), host(new PreviewView(this)) {
    setMinimumWidth(260);
    setAccessibleName(QStringLiteral("Preview pane"));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(16, 10, 16, 16);
    auto* header = new QHBoxLayout;
    auto* heading = new QLabel(QStringLiteral("Preview"), this);
    QFont font = heading->font();
    font.setPointSize(14);
    font.setWeight(QFont::Medium);
    heading->setFont(font);
    auto* close = new QToolButton(this);
    close->setIcon(symbolIcon(QStringLiteral("xmark"), Palette::muted()));
    close->setToolTip(QStringLiteral("Close preview pane (Alt+P)"));
    close->setAccessibleName(QStringLiteral("Close preview pane"));
    close->setAutoRaise(true);
    connect(close, &QToolButton::clicked, this, &PreviewPane::closeRequested);
    header->addWidget(heading);
    header->addStretch(1);
    header->addWidget(close);
    column->addLayout(header);
    column->addWidget(host, 1);
    nameLabel = lineLabel(this, false);
    metadataLabel = lineLabel(this, true);
    column->addWidget(nameLabel);
    column->addWidget(metadataLabel);
    connect(loader, &PreviewLoader::loaded, this, [this](PreviewContent content) {
        if (content.isNull())
            content.card = PreviewCard::unavailable();
        else if (content.card)
            content.card = shown.summary();
        host->showContent(content);
        hasContent = true;
        emit previewShown();
    });
}

namespace {
bool sameFiles(const std::vector<Entry>& a, const std::vector<Entry>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const Entry& x, const Entry& y) {
        return x.location == y.location && x.modified == y.modified && x.size == y.size;
    });
}
} // namespace

void PreviewPane::update(const std::vector<Entry>& selected) {
    PreviewSelection next = PreviewSelection::of(selected);
    // A folder read again with the same file selected keeps its preview rather than flickering.
    if (hasContent && sameFiles(next.files, shown.files)) return;
    loader->cancel();
    hasContent = false;
    shown = std::move(next);
    nameLabel->setText(shown.fileName);
    nameLabel->setToolTip(shown.fileToolTip);
    metadataLabel->setText(shown.metadata);
    if (shown.card) {
        hasContent = !shown.files.empty();
        return host->showCard(*shown.card);
    }
    // Nothing of the previous file stays while this one loads.
    host->showCard({});
    loader->request(shown.files.front().location, pictureBound);
}

void PreviewPane::clear() {
    update({});
}

PreviewRenderers& PreviewPane::renderers() {
    return loader->renderers();
}

QString PreviewPane::fileName() const {
    return nameLabel->text();
}

QString PreviewPane::fileMetadata() const {
    return metadataLabel->text();
}

} // namespace orvane
