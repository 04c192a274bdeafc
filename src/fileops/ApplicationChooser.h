#pragma once

#include "core/Applications.h"

#include <QDialog>

class QLineEdit;
class QListWidget;

namespace orvane {

// Every installed application by icon and name; typing narrows the list.
class ApplicationChooser : public QDialog {
    Q_OBJECT
public:
    ApplicationChooser(const QList<Applications::Application>& applications, QWidget* parent);
    // The id of the application chosen; empty while none is.
    QString chosen() const;
    QLineEdit* filterField() const { return filter; }
    QListWidget* list() const { return rows; }

private:
    void narrow(const QString& text);

    QLineEdit* filter;
    QListWidget* rows;
};

} // namespace orvane
