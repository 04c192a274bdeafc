#pragma once

#include <QDialog>
#include <optional>

class QLabel;
class QLineEdit;
class QPushButton;

namespace orvane {

// The small modal window in which a folder's colour is chosen: seven presets, a hex field, a preview,
// and "Default", which stands for no colour at all rather than for yellow.
class FolderColorPicker : public QDialog {
    Q_OBJECT
public:
    static const QStringList& presets();

    explicit FolderColorPicker(const std::optional<QString>& initial, QWidget* parent = nullptr);

    // True when the person confirmed; the result is then `selectedHex`, none for "Default".
    bool pick();
    std::optional<QString> selectedHex() const { return chosen; }

    QLineEdit* hexField() const { return hex; }
    QPushButton* okButton() const { return ok; }
    QString errorText() const;

private:
    QWidget* buildSwatches();
    QWidget* buildButtons();
    void setColor(const QString& value);
    void typed(const QString& text);
    void confirm();

    QLineEdit* hex;
    QLabel* preview;
    QLabel* error;
    QPushButton* ok = nullptr;
    bool useDefault = false;
    std::optional<QString> chosen;
};

} // namespace orvane
