#include "browsing/EditablePathBox.h"

#include "browsing/Entry.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QToolButton>

namespace orvane {

EditablePathBox::EditablePathBox(QWidget* parent)
    : QStackedWidget(parent), bar(new QWidget(this)), barLayout(new QHBoxLayout(bar)),
      field(new QLineEdit(this)) {
    barLayout->setContentsMargins(6, 0, 6, 0);
    barLayout->setSpacing(0);
    addWidget(bar);
    addWidget(field);
    setMinimumHeight(30);
    connect(field, &QLineEdit::returnPressed, this, &EditablePathBox::addressEntered);
}

void EditablePathBox::setPath(const QUrl& url) {
    QList<QUrl> urls;
    QString path = url.toLocalFile();
    names.clear();
    for (;;) {
        urls.prepend(QUrl::fromLocalFile(path));
        names.prepend(folderName(QUrl::fromLocalFile(path)));
        if (path == QLatin1String("/") || path.isEmpty()) break;
        const qsizetype slash = path.lastIndexOf(u'/');
        path = slash <= 0 ? QStringLiteral("/") : path.left(slash);
    }
    rebuild(urls);
}

void EditablePathBox::setElements(const QStringList& elementNames, const QList<QUrl>& urls) {
    names = elementNames;
    rebuild(urls.size() == names.size() ? urls : QList<QUrl>(names.size()));
}

void EditablePathBox::rebuild(const QList<QUrl>& urls) {
    while (QLayoutItem* item = barLayout->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    for (int i = 0; i < names.size(); ++i) {
        if (i > 0) {
            auto* chevron = new QLabel(QStringLiteral("›"), bar);
            chevron->setForegroundRole(QPalette::PlaceholderText);
            barLayout->addWidget(chevron);
        }
        auto* button = new QToolButton(bar);
        button->setText(names[i]);
        button->setAccessibleName(names[i]);
        button->setAutoRaise(true);
        const QUrl url = urls.value(i);
        connect(button, &QToolButton::clicked, this, [this, i, url] { emit elementClicked(i, url); });
        barLayout->addWidget(button);
    }
    barLayout->addStretch(1);
}

void EditablePathBox::showAddress() {
    setCurrentIndex(1);
    field->setFocus();
    field->selectAll();
}

void EditablePathBox::showPathBar() {
    setCurrentIndex(0);
}

// A click on the empty part of the bar turns it into the address field, as in most file browsers.
void EditablePathBox::mousePressEvent(QMouseEvent* event) {
    if (currentIndex() == 0 && event->button() == Qt::LeftButton) showAddress();
    QStackedWidget::mousePressEvent(event);
}

} // namespace orvane
