#pragma once

#include <QLineEdit>
#include <QStackedWidget>
#include <QUrl>

class QHBoxLayout;
class QLabel;

namespace orvane {

// The breadcrumb path bar and the typed address field, sharing one place in the navigation row.
class EditablePathBox : public QStackedWidget {
    Q_OBJECT
public:
    explicit EditablePathBox(QWidget* parent = nullptr);

    QLineEdit* addressField() const { return field; }
    void setPath(const QUrl& url);
    // Shows a bar of fixed elements, as for a phone: clicks report the element's index and its
    // address, when one is given.
    void setElements(const QStringList& names, const QList<QUrl>& urls = {});
    QStringList elements() const { return names; }
    void showAddress();
    void showPathBar();
    bool addressShown() const { return currentIndex() == 1; }
    // Completes the last name typed to the folders of that name's folder (a relative one beneath
    // `base`): in full, with a slash, when only one fits, else as far as they agree. False when none fits.
    bool completeFolder(const QString& base);

signals:
    void elementClicked(int index, const QUrl& url);
    void addressEntered();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void rebuild(const QList<QUrl>& urls);
    // A narrow bar shows the last folders of the path, after an ellipsis.
    void fitElements();

    QWidget* bar;
    QHBoxLayout* barLayout;
    QLineEdit* field;
    QStringList names;
    QLabel* ellipsis = nullptr;
    // Per element: its separator (none for the first) and its button.
    QList<QPair<QWidget*, QWidget*>> parts;
};

} // namespace orvane
