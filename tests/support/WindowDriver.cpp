#include "WindowDriver.h"

#include "browsing/Explorer.h"
#include "views/FileTable.h"

#include <QAbstractButton>
#include <QApplication>
#include <QInputDialog>
#include <QMessageBox>
#include <QTimer>

namespace orvane::test {

void selectRows(QAbstractItemView& view, const QList<int>& rows) {
    view.clearSelection();
    for (int row : rows)
        view.selectionModel()->select(view.model()->index(row, 0),
                                      QItemSelectionModel::Select | QItemSelectionModel::Rows);
}

QList<int> selectedRows(const QAbstractItemView& view) {
    QList<int> rows;
    for (const QModelIndex& index : view.selectionModel()->selectedRows())
        rows << index.row();
    std::sort(rows.begin(), rows.end());
    return rows;
}

void selectNames(Explorer& w, const QStringList& wanted) {
    QList<int> rows;
    for (size_t row = 0; row < w.entries().size(); ++row)
        if (wanted.contains(w.entries()[row].name())) rows << int(row);
    selectRows(*w.table(), rows);
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
