#pragma once

#include "preview/PreviewContent.h"

#include <QPointer>
#include <QWidget>

class QLabel;
class QPlainTextEdit;
class QStackedLayout;

namespace orvane {

class PictureCanvas;

// The area that shows one preview: a picture, a text, a card, or a renderer's own live view, made
// anew for each file so nothing of the previous one stays.
class PreviewView : public QWidget {
    Q_OBJECT
public:
    enum class Showing { Card, Picture, Text, Live };

    explicit PreviewView(QWidget* parent = nullptr);
    void showCard(const PreviewCard& card);
    // A content with a card shows that card; fill it in first.
    void showContent(const PreviewContent& content);

    Showing showing() const { return now; }
    QString cardTitle() const;
    QString cardText() const;
    QImage picture() const;
    QString text() const;

private:
    QWidget* buildCard();
    void discardLive();

    QStackedLayout* stack;
    QWidget* card;
    QLabel* cardIcon;
    QLabel* cardTitleLabel;
    QLabel* cardTextLabel;
    PictureCanvas* canvas;
    QPlainTextEdit* textView;
    QPointer<QWidget> live;
    Showing now = Showing::Card;
};

} // namespace orvane
