#pragma once

#include <QByteArray>
#include <QStringList>

namespace orvane {

class Settings;

// Which columns of the details table show, and the header's saved widths, kept in the preferences.
// "name" always shows. Every change is written at once.
class ColumnSettings {
public:
    // Reads the visible list and, once per user, adds "dimensions" to it.
    explicit ColumnSettings(Settings& settings);

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

    Settings& settings;
    QStringList visible;
};

} // namespace orvane
