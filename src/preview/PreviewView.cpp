#include "preview/PreviewView.h"

#include "kit/Palette.h"
#include "kit/Symbols.h"
#include "preview/PictureCanvas.h"
#include "preview/PreviewRenderer.h"

#include <QFontDatabase>
#include <QLabel>
#include <QPlainTextEdit>
#include <QStackedLayout>
#include <QVBoxLayout>

namespace orvane {

PreviewView::PreviewView(QWidget* parent) : QWidget(parent) {
    stack = new QStackedLayout(this);
    stack->addWidget(card = buildCard());
    canvas = new PictureCanvas(this);
    canvas->setAccessibleName(QStringLiteral("Picture preview"));
    stack->addWidget(canvas);
    textView = new QPlainTextEdit(this);
    textView->setReadOnly(true);
    textView->setLineWrapMode(QPlainTextEdit::NoWrap);
    textView->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    textView->setAccessibleName(QStringLiteral("Text preview"));
    textView->setFrameShape(QFrame::NoFrame);
    stack->addWidget(textView);
    showCard(PreviewCard::start());
}

QWidget* PreviewView::buildCard() {
    auto* page = new QWidget(this);
    auto* column = new QVBoxLayout(page);
    column->addStretch(1);
    cardIcon = new QLabel(page);
    cardIcon->setAlignment(Qt::AlignCenter);
    cardTitleLabel = new QLabel(page);
    QFont font = cardTitleLabel->font();
    font.setPointSize(13);
    font.setWeight(QFont::Medium);
    cardTitleLabel->setFont(font);
    cardTextLabel = new QLabel(page);
    cardTextLabel->setForegroundRole(QPalette::PlaceholderText);
    for (QLabel* label : {cardTitleLabel, cardTextLabel}) {
        label->setAlignment(Qt::AlignCenter);
        label->setWordWrap(true);
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    }
    column->addWidget(cardIcon);
    column->addWidget(cardTitleLabel);
    column->addWidget(cardTextLabel);
    column->addStretch(2);
    return page;
}

void PreviewView::showCard(const PreviewCard& shown) {
    discardLive();
    const QIcon icon = shown.icon.isNull() ? symbolIcon(shown.symbol, Palette::muted()) : shown.icon;
    cardIcon->setPixmap(icon.pixmap(56, 56));
    cardTitleLabel->setText(shown.title);
    cardTextLabel->setText(shown.text);
    canvas->setPicture({});
    textView->clear();
    stack->setCurrentWidget(card);
    now = Showing::Card;
}

void PreviewView::showContent(const PreviewContent& content) {
    QWidget* made = content.renderer ? content.renderer->present(content, this) : nullptr;
    if (content.card || (!made && content.picture.isNull() && content.text.isNull())) {
        delete made;
        return showCard(content.card.value_or(PreviewCard::unavailable()));
    }
    showCard({});
    if (made) {
        live = made;
        stack->addWidget(made);
        stack->setCurrentWidget(made);
        now = Showing::Live;
    } else if (!content.picture.isNull()) {
        canvas->setPicture(content.picture);
        stack->setCurrentWidget(canvas);
        now = Showing::Picture;
    } else {
        textView->setPlainText(content.text);
        stack->setCurrentWidget(textView);
        now = Showing::Text;
    }
}

void PreviewView::discardLive() {
    if (!live) return;
    stack->removeWidget(live);
    delete live;
}

QString PreviewView::cardTitle() const {
    return cardTitleLabel->text();
}

QString PreviewView::cardText() const {
    return cardTextLabel->text();
}

QImage PreviewView::picture() const {
    return canvas->picture();
}

QString PreviewView::text() const {
    return textView->toPlainText();
}

} // namespace orvane
