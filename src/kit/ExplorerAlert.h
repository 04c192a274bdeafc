#pragma once

#include <QMessageBox>

namespace orvane {

// Alerts and confirmations in the look of the program's own windows: dark, frameless, centred on
// their window, with the program's symbol instead of the system's question mark.
class ExplorerAlert : public QMessageBox {
    Q_OBJECT
public:
    enum class Kind {
        Error,       // a report with "OK"
        Question,    // the first answer is the default
        Destructive, // cannot be undone: "Cancel" is the default, so Return never destroys anything
    };

    ExplorerAlert(Kind kind, const QString& title, const QString& detail, QWidget* parent);

    // A window-modal report on `parent`, open at once; it deletes itself when closed.
    static ExplorerAlert* showError(QWidget* parent, const QString& title, const QString& detail);
    // Asks with `accept` and "Cancel" and waits; true when `accept` was chosen. `symbol` names the
    // program's symbol shown beside the question.
    static bool confirm(QWidget* parent, Kind kind, const QString& message, const QString& info,
                        const QString& accept, const QString& symbol);

protected:
    void showEvent(QShowEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void setSymbol(const QString& symbol, const QColor& color);
};

} // namespace orvane
