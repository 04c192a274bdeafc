#include "fileops/ApplicationChooser.h"

#include "kit/AuxiliaryStyle.h"

#include <QDialogButtonBox>
#include <QFileInfo>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace orvane {

namespace {
// A theme name or a file: GIO hands either.
QIcon iconOf(const QString& name) {
    if (name.startsWith(u'/')) return QIcon(name);
    return QIcon::fromTheme(name, QIcon::fromTheme(QStringLiteral("application-x-executable")));
}
} // namespace

ApplicationChooser::ApplicationChooser(const QList<Applications::Application>& applications, QWidget* parent)
    : QDialog(parent), filter(new QLineEdit(this)), rows(new QListWidget(this)) {
    AuxiliaryStyle::apply(this);
    setWindowTitle(QStringLiteral("Choose an application"));
    auto* message = new QLabel(
        QStringLiteral(
            "Open the selected item(s) with this application. The default app will stay unchanged."),
        this);
    message->setWordWrap(true);
    filter->setPlaceholderText(QStringLiteral("Type to filter"));
    filter->setAccessibleName(QStringLiteral("Filter applications"));
    filter->setClearButtonEnabled(true);
    rows->setAccessibleName(QStringLiteral("Applications"));
    rows->setIconSize(QSize(24, 24));
    for (const Applications::Application& app : applications) {
        auto* row = new QListWidgetItem(iconOf(app.icon), app.name, rows);
        row->setData(Qt::UserRole, app.id);
        row->setToolTip(app.path);
    }
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    QPushButton* open = buttons->addButton(QStringLiteral("Open"), QDialogButtonBox::AcceptRole);
    open->setEnabled(false);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(rows, &QListWidget::currentItemChanged, this,
            [open](QListWidgetItem* now) { open->setEnabled(now && !now->isHidden()); });
    connect(rows, &QListWidget::itemActivated, this, &QDialog::accept);
    connect(filter, &QLineEdit::textChanged, this, &ApplicationChooser::narrow);
    // Return in the field takes the first application still shown.
    connect(filter, &QLineEdit::returnPressed, this, [this] {
        if (!chosen().isEmpty()) accept();
    });
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(message);
    layout->addWidget(filter);
    layout->addWidget(rows);
    layout->addWidget(buttons);
    resize(420, 480);
    filter->setFocus();
}

void ApplicationChooser::narrow(const QString& text) {
    QListWidgetItem* first = nullptr;
    for (int i = 0; i < rows->count(); ++i) {
        QListWidgetItem* row = rows->item(i);
        row->setHidden(!row->text().contains(text.trimmed(), Qt::CaseInsensitive));
        if (!first && !row->isHidden()) first = row;
    }
    rows->setCurrentItem(first);
}

QString ApplicationChooser::chosen() const {
    const QListWidgetItem* row = rows->currentItem();
    return row && !row->isHidden() ? row->data(Qt::UserRole).toString() : QString();
}

} // namespace orvane
