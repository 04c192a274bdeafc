#include "phone/SendFilesDialog.h"

#include "platform/NativePath.h"

#include <QAbstractButton>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QLineEdit>

namespace orvane {

SendFilesDialog::SendFilesDialog(QWidget* parent)
    : QFileDialog(parent, QStringLiteral("Send files to the phone")) {
    setAttribute(Qt::WA_DeleteOnClose);
    // The platform's own dialog can't take files and folders at once.
    setOption(QFileDialog::DontUseNativeDialog);
    setFileMode(QFileDialog::ExistingFiles);
    setLabelText(QFileDialog::Accept, QStringLiteral("Send"));
    setAccessibleName(QStringLiteral("Choose files and folders to send"));
    // The dialog names its button "Open" whenever a folder is chosen; here a folder is sent too.
    const auto relabel = [this] {
        if (auto* box = findChild<QDialogButtonBox*>())
            for (QAbstractButton* button : box->buttons())
                if (box->buttonRole(button) == QDialogButtonBox::AcceptRole)
                    button->setText(QStringLiteral("Send"));
    };
    connect(this, &QFileDialog::currentChanged, this, relabel, Qt::QueuedConnection);
    if (auto* field = findChild<QLineEdit*>())
        connect(field, &QLineEdit::textChanged, this, relabel, Qt::QueuedConnection);
}

void SendFilesDialog::accept() {
    QStringList files = selectedFiles();
    // With nothing chosen the dialog answers the folder it shows; that is not a choice to send it.
    files.removeAll(directory().absolutePath());
    QList<QByteArray> paths;
    QStringList names;
    for (const QString& file : files) {
        if (!QFileInfo::exists(file)) return QFileDialog::accept(); // a typed name the dialog resolves
        paths << NativePath::encode(file);
        names << QFileInfo(file).fileName();
    }
    if (paths.isEmpty()) return;
    emit chosen(paths, names);
    QDialog::accept();
}

} // namespace orvane
