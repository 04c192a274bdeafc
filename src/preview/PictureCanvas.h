#pragma once

#include <QImage>
#include <QWidget>

namespace orvane {

// A picture drawn whole and centred at any size of the widget, never larger than its own pixels.
class PictureCanvas : public QWidget {
    Q_OBJECT
public:
    explicit PictureCanvas(QWidget* parent = nullptr);
    void setPicture(const QImage& picture);
    const QImage& picture() const { return image; }
    // Where the picture is drawn.
    QRect pictureRect() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QImage image;
};

} // namespace orvane
