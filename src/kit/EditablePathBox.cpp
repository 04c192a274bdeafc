#include "kit/EditablePathBox.h"

#include "core/Entry.h"
#include "platform/Platform.h"

#include <QDir>

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
    // The bar fits itself to any width by leaving out leading folders.
    bar->setMinimumWidth(80);
    addWidget(bar);
    addWidget(field);
    setMinimumHeight(30);
    connect(field, &QLineEdit::returnPressed, this, &EditablePathBox::addressEntered);
}

bool EditablePathBox::completeFolder(const QString& base) {
    const QString typed = field->text();
    const qsizetype slash = typed.lastIndexOf(u'/');
    const QString prefix = typed.mid(slash + 1);
    QString folder = typed.left(slash + 1);
    if (folder.startsWith(u'~')) folder = QDir::homePath() + folder.mid(1);
    if (!folder.startsWith(u'/')) folder = base + u'/' + folder;
    QStringList fits;
    QString error;
    Platform::instance().listSubfolders(
        folder,
        [&](QString&& name, bool hidden) {
            if (name.startsWith(prefix) && (!hidden || prefix.startsWith(u'.'))) fits << name;
        },
        error);
    if (fits.isEmpty()) return false;
    QString common = fits.front();
    for (const QString& name : fits) {
        qsizetype same = 0;
        while (same < common.size() && same < name.size() && common[same] == name[same])
            ++same;
        common.truncate(same);
    }
    field->setText(typed.left(slash + 1) + common + (fits.size() == 1 ? QStringLiteral("/") : QString()));
    return true;
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
    parts.clear();
    ellipsis = new QLabel(QStringLiteral("… ›"), bar);
    ellipsis->setForegroundRole(QPalette::PlaceholderText);
    ellipsis->hide();
    barLayout->addWidget(ellipsis);
    for (int i = 0; i < names.size(); ++i) {
        QLabel* chevron = nullptr;
        if (i > 0) {
            chevron = new QLabel(QStringLiteral("›"), bar);
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
        parts.append({chevron, button});
    }
    barLayout->addStretch(1);
    fitElements();
}

void EditablePathBox::resizeEvent(QResizeEvent* event) {
    QStackedWidget::resizeEvent(event);
    fitElements();
}

void EditablePathBox::fitElements() {
    if (!ellipsis) return;
    for (const auto& [chevron, button] : parts) {
        if (chevron) chevron->show();
        button->show();
    }
    ellipsis->hide();
    // The current folder always shows, however narrow the bar.
    for (int first = 0; first + 1 < parts.size(); ++first) {
        barLayout->invalidate();
        if (barLayout->sizeHint().width() <= bar->width()) return;
        ellipsis->show();
        if (parts[first].first) parts[first].first->hide();
        parts[first].second->hide();
        // The separator of the first folder left is the ellipsis' own.
        if (parts[first + 1].first) parts[first + 1].first->hide();
    }
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
