#include "preview/QuickLookPanel.h"

#include "platform/Platform.h"
#include "preview/PreviewLoader.h"
#include "preview/PreviewSelection.h"
#include "preview/PreviewView.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPlainTextEdit>
#include <QVBoxLayout>
#include <algorithm>

namespace orvane {

QuickLookPanel::QuickLookPanel(QWidget* window)
    : QWidget(window, Qt::Tool), loader(new PreviewLoader(this)), host(new PreviewView(this)) {
    const QString title = Platform::instance().word(PlatformWord::QuickLook);
    setWindowTitle(title);
    setAccessibleName(title);
    resize(640, 520);
    auto* column = new QVBoxLayout(this);
    column->addWidget(host, 1);
    auto* foot = new QHBoxLayout;
    nameLabel = new QLabel(this);
    positionLabel = new QLabel(this);
    positionLabel->setForegroundRole(QPalette::PlaceholderText);
    foot->addWidget(nameLabel, 1);
    foot->addWidget(positionLabel);
    column->addLayout(foot);
    // The arrows step through the items, so no part of the preview takes the keys.
    setFocusPolicy(Qt::StrongFocus);
    for (QPlainTextEdit* text : host->findChildren<QPlainTextEdit*>())
        text->setFocusPolicy(Qt::NoFocus);
    connect(loader, &PreviewLoader::loaded, this, [this](PreviewContent content) {
        if (content.isNull())
            content.card = PreviewCard::unavailable();
        else if (content.card)
            content.card = PreviewSelection::of({items[at]}).summary();
        host->showContent(content);
        emit previewShown();
    });
}

void QuickLookPanel::open(const std::vector<Entry>& chosen, const PreviewRenderers& renderers) {
    items = chosen;
    at = 0;
    loader->renderers() = renderers;
    if (QWidget* window = parentWidget()) move(window->geometry().center() - rect().center());
    show();
    raise();
    activateWindow();
    setFocus();
    showItem();
}

void QuickLookPanel::follow(const std::vector<Entry>& chosen) {
    if (chosen.empty()) return;
    const bool same = std::equal(chosen.begin(), chosen.end(), items.begin(), items.end(),
                                 [](const Entry& a, const Entry& b) { return a.location == b.location; });
    if (same) return;
    items = chosen;
    at = 0;
    showItem();
}

void QuickLookPanel::step(int by) {
    const int next = qBound(0, at + by, count() - 1);
    if (next == at) return;
    at = next;
    showItem();
}

void QuickLookPanel::showItem() {
    if (items.empty()) return;
    const PreviewSelection one = PreviewSelection::of({items[at]});
    nameLabel->setText(one.fileName.isEmpty() ? items[at].name() : one.fileName);
    nameLabel->setToolTip(one.fileToolTip);
    positionLabel->setText(count() > 1 ? QStringLiteral("%1 of %2").arg(at + 1).arg(count()) : QString());
    loader->cancel();
    if (one.card) return host->showCard(*one.card);
    host->showCard({});
    const qreal ratio = devicePixelRatioF();
    loader->request(items[at].location, QSize(1600, 1600) * ratio);
}

void QuickLookPanel::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Space:
    case Qt::Key_Escape:
        loader->cancel();
        hide();
        if (parentWidget()) parentWidget()->activateWindow();
        return;
    case Qt::Key_Left:
    case Qt::Key_Up:
        return step(-1);
    case Qt::Key_Right:
    case Qt::Key_Down:
        return step(1);
    default:
        QWidget::keyPressEvent(event);
    }
}

} // namespace orvane
