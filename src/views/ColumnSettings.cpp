#include "views/ColumnSettings.h"

#include "core/Settings.h"
#include "views/ExplorerColumns.h"

namespace orvane {

namespace {

const QString nameKey = QStringLiteral("name");

// Known keys of `keys` in column order, with "name" always among them.
QStringList inColumnOrder(const QStringList& keys) {
    QStringList ordered;
    for (const ExplorerColumn& column : explorerColumns())
        if (column.key == nameKey || keys.contains(column.key)) ordered << column.key;
    return ordered;
}

bool knowsAny(const QStringList& keys) {
    for (const QString& key : keys)
        if (explorerColumnIndex(key) >= 0) return true;
    return false;
}

} // namespace

QStringList ColumnSettings::defaultVisible() {
    return {nameKey, QStringLiteral("modified"), QStringLiteral("kind"), QStringLiteral("size")};
}

ColumnSettings::ColumnSettings(Settings& settings) : settings(settings) {
    // A value that names no column at all is damage, not a choice: fall back to the defaults.
    const QStringList stored = settings.visibleColumns().value_or(QStringList());
    visible = inColumnOrder(knowsAny(stored) ? stored : defaultVisible());
    if (!settings.dimensionsIntroduced()) {
        visible = inColumnOrder(visible << QStringLiteral("dimensions"));
        write();
        settings.setDimensionsIntroduced(true);
    }
}

bool ColumnSettings::isVisible(const QString& key) const {
    return key == nameKey || visible.contains(key);
}

bool ColumnSettings::toggle(const QString& key) {
    return setVisible(key, !isVisible(key));
}

bool ColumnSettings::setVisible(const QString& key, bool shown) {
    if (key == nameKey || explorerColumnIndex(key) < 0) return false;
    QStringList keys = visible;
    if (shown)
        keys << key;
    else
        keys.removeAll(key);
    visible = inColumnOrder(keys);
    write();
    return true;
}

QByteArray ColumnSettings::headerState() const {
    return settings.detailsHeader();
}

void ColumnSettings::saveHeaderState(const QByteArray& state) {
    settings.setDetailsHeader(state);
}

void ColumnSettings::write() {
    settings.setVisibleColumns(visible);
}

} // namespace orvane
