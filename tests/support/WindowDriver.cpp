#include "WindowDriver.h"

#include "browsing/Explorer.h"
#include "views/FileTable.h"

#include <QAbstractButton>
#include <QApplication>
#include <QInputDialog>
#include <QMessageBox>
#include <QTimer>

namespace orvane::test {

void selectNames(Explorer& w, const QStringList& wanted) {
    w.table()->clearSelection();
    for (size_t row = 0; row < w.entries.size(); ++row)
        if (wanted.contains(w.entries[row].name()))
            w.table()->selectionModel()->select(w.table()->model()->index(int(row), 0),
                                                QItemSelectionModel::Select | QItemSelectionModel::Rows);
}

QString takeAlert(Explorer& w) {
    QPointer<QMessageBox> box = w.lastAlert();
    if (!box) return {};
    const QString text = box->text() + u'|' + box->informativeText();
    box->close();
    return text;
}

void answerNextDialog(const QString& button, const QString& typed) {
    QTimer::singleShot(0, [button, typed] {
        QWidget* modal = QApplication::activeModalWidget();
        if (auto* input = qobject_cast<QInputDialog*>(modal)) {
            input->setTextValue(typed);
            button == QLatin1String("OK") ? input->accept() : input->reject();
            return;
        }
        for (QAbstractButton* b : modal ? modal->findChildren<QAbstractButton*>() : QList<QAbstractButton*>())
            if (b->text() == button) {
                b->click();
                return;
            }
    });
}

} // namespace orvane::test
