#include "kit/FolderColorPicker.h"

#include "core/FolderColors.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace orvane {

const QStringList& FolderColorPicker::presets() {
    static const QStringList list = {QStringLiteral("#EF6B73"), QStringLiteral("#F5A45D"),
                                     QStringLiteral("#FFD65A"), QStringLiteral("#75C991"),
                                     QStringLiteral("#58C9CF"), QStringLiteral("#6EAAED"),
                                     QStringLiteral("#AA8CE8")};
    return list;
}

FolderColorPicker::FolderColorPicker(const std::optional<QString>& initial, QWidget* parent)
    : QDialog(parent), hex(new QLineEdit(this)), preview(new QLabel(this)), error(new QLabel(this)) {
    setWindowTitle(QStringLiteral("Folder Color"));
    auto* layout = new QVBoxLayout(this);
    preview->setFixedSize(96, 48);
    preview->setAccessibleName(QStringLiteral("Preview"));
    layout->addWidget(preview);
    layout->addWidget(buildSwatches());
    auto* row = new QHBoxLayout;
    auto* label = new QLabel(QStringLiteral("Hex"), this);
    label->setBuddy(hex);
    hex->setPlaceholderText(QStringLiteral("#RRGGBB"));
    hex->setAccessibleName(QStringLiteral("Hex color"));
    row->addWidget(label);
    row->addWidget(hex);
    layout->addLayout(row);
    error->setStyleSheet(QStringLiteral("color: #E5484D"));
    error->setAccessibleName(QStringLiteral("Error"));
    layout->addWidget(error);
    layout->addWidget(buildButtons());
    const std::optional<QString> start = initial ? FolderColors::normalize(*initial) : std::nullopt;
    setColor(start.value_or(QLatin1String(FolderColors::defaultHex)));
    useDefault = !start;
    connect(hex, &QLineEdit::textEdited, this, &FolderColorPicker::typed);
}

QWidget* FolderColorPicker::buildSwatches() {
    auto* box = new QWidget(this);
    auto* row = new QHBoxLayout(box);
    for (const QString& value : presets()) {
        auto* swatch = new QPushButton(box);
        swatch->setFixedSize(28, 28);
        swatch->setToolTip(QStringLiteral("Color ") + value);
        swatch->setAccessibleName(QStringLiteral("Color ") + value);
        swatch->setStyleSheet(QStringLiteral("background: %1; border-radius: 6px").arg(value));
        connect(swatch, &QPushButton::clicked, this, [this, value] {
            useDefault = false;
            setColor(value);
        });
        row->addWidget(swatch);
    }
    return box;
}

QWidget* FolderColorPicker::buildButtons() {
    auto* box = new QWidget(this);
    auto* row = new QHBoxLayout(box);
    auto* cancel = new QPushButton(QStringLiteral("Cancel"), box);
    auto* fallback = new QPushButton(QStringLiteral("Default"), box);
    ok = new QPushButton(QStringLiteral("OK"), box);
    ok->setDefault(true);
    row->addStretch();
    row->addWidget(cancel);
    row->addWidget(fallback);
    row->addWidget(ok);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(fallback, &QPushButton::clicked, this, [this] {
        setColor(QLatin1String(FolderColors::defaultHex));
        useDefault = true;
    });
    connect(ok, &QPushButton::clicked, this, &FolderColorPicker::confirm);
    return box;
}

void FolderColorPicker::setColor(const QString& value) {
    hex->setText(value);
    preview->setStyleSheet(QStringLiteral("background: %1; border-radius: 6px").arg(value));
    error->clear();
    ok->setEnabled(true);
}

// The text being typed is left alone while it is not a colour yet.
void FolderColorPicker::typed(const QString& text) {
    useDefault = false;
    const std::optional<QString> value = FolderColors::normalize(text);
    if (value) {
        preview->setStyleSheet(QStringLiteral("background: %1; border-radius: 6px").arg(*value));
        error->clear();
        ok->setEnabled(true);
        return;
    }
    error->setText(QStringLiteral("Use 6 Hex digits: #RRGGBB"));
    ok->setEnabled(false);
}

void FolderColorPicker::confirm() {
    const std::optional<QString> value = FolderColors::normalize(hex->text());
    if (!value) return;
    chosen = useDefault ? std::nullopt : value;
    accept();
}

QString FolderColorPicker::errorText() const {
    return error->text();
}

bool FolderColorPicker::pick() {
    return exec() == QDialog::Accepted;
}

} // namespace orvane
