#pragma once

#include <QByteArray>
#include <QSettings>
#include <QStringList>

namespace orvane {

// Which columns of the details table show, and the header's saved widths, kept in the preferences.
// "name" always shows. Every change is written at once.
class ColumnSettings {
public:
    static constexpr const char* visibleKey = "details.visibleColumns.v1";
    static constexpr const char* dimensionsIntroducedKey = "details.dimensionsIntroduced.v1";
    static constexpr const char* headerStateKey = "Quilland.DetailsColumns.v1";

    // Reads the visible list and, once per user, adds "dimensions" to it.
    explicit ColumnSettings(QSettings& settings);

    static QStringList defaultVisible();

    // The visible keys, in column order.
    QStringList visibleColumns() const { return visible; }
    bool isVisible(const QString& key) const;
    // Flips a column; false, and nothing written, for "name" or an unknown key.
    bool toggle(const QString& key);
    // Shows or hides a column; false for "name" or an unknown key.
    bool setVisible(const QString& key, bool shown);

    // The header's own bytes (widths, hidden sections); empty when never saved.
    QByteArray headerState() const;
    void saveHeaderState(const QByteArray& state);

private:
    void write();

    QSettings& settings;
    QStringList visible;
};

} // namespace orvane
