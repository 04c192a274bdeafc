#pragma once

#include <QImage>
#include <QWidget>

namespace orvane {

class BusySpinner;

// Where a video plays over its own icon. It never takes a click: everything goes through to the
// row or tile beneath it.
class InlineVideoSurface : public QWidget {
    Q_OBJECT
public:
    explicit InlineVideoSurface(QWidget* parent);

    void setFrame(const QImage& image);
    const QImage& frame() const { return picture; }
    // A message with a spinner while the video is prepared; an empty text takes both away.
    void showMessage(const QString& text);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QImage picture;
    BusySpinner* spinner;
};

} // namespace orvane
