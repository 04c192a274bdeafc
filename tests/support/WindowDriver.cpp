#include "WindowDriver.h"

#include "views/FileTable.h"
#include "window/Explorer.h"

#include <QAbstractButton>
#include <QApplication>
#include <QInputDialog>
#include <QMessageBox>
#include <QTest>
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

QKeyEvent keyEvent(QEvent::Type type, const Key& key, Qt::KeyboardModifiers modifiers, const QString& text) {
    const int qtKey = text.size() == 1 && text[0].unicode() > 127 ? text[0].unicode() : key.qtKey;
    return QKeyEvent(type, qtKey, modifiers, key.scanCode, key.virtualKey, 1, text);
}

bool press(QWidget* window, const Key& key, Qt::KeyboardModifiers modifiers, const QString& text) {
    static ulong clock = 1;
    ++clock;
    QWidget* target = window->focusWidget() ? window->focusWidget() : window;
    QKeyEvent announce = keyEvent(QEvent::ShortcutOverride, key, modifiers, text);
    announce.setTimestamp(clock);
    announce.ignore();
    QSpontaneKeyEvent::setSpontaneous(&announce);
    const bool taken = qApp->notify(target, &announce) && announce.isAccepted();
    QKeyEvent down = keyEvent(QEvent::KeyPress, key, modifiers, text);
    down.setTimestamp(clock);
    QSpontaneKeyEvent::setSpontaneous(&down);
    qApp->notify(target, &down);
    return taken || down.isAccepted();
}

// Letters and digits only: their scan codes are not needed by the fields that take text.
void typeText(QWidget* window, const QString& text) {
    for (const QChar c : text) {
        const int qtKey = c.isLetter() ? QChar(c.toUpper()).unicode() : c.unicode();
        press(window, Key{0, 0, qtKey}, Qt::NoModifier, QString(c));
    }
}

} // namespace orvane::test
