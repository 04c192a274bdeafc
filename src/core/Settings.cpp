#include "core/Settings.h"

#include "core/Preferences.h"

namespace orvane {

Settings::Settings(QObject* parent) : QObject(parent), store(Preferences::standard()) {}

Settings::Settings(const QString& file, QObject* parent)
    : QObject(parent), file(file), store(std::make_unique<QSettings>(file, QSettings::IniFormat)) {}

Settings::~Settings() = default;

QVariant Settings::read(const char* key) const {
    return store->value(QLatin1String(key));
}

bool Settings::write(const char* key, const QVariant& value) {
    const QString name = QLatin1String(key);
    const bool changed = !store->contains(name) || store->value(name) != value;
    store->setValue(name, value);
    return changed;
}

// The battery's pins go to a suite of their own, chosen when it starts, so they never touch the user's.
std::unique_ptr<QSettings> Settings::pinSuite() const {
    return file.isEmpty() ? Preferences::pins() : std::make_unique<QSettings>(file, QSettings::IniFormat);
}

QString Settings::lastFolder() const {
    return read(lastFolderKey).toString();
}

void Settings::setLastFolder(const QString& path) {
    if (file.isEmpty() && Preferences::selfTest()) return;
    if (write(lastFolderKey, path)) emit lastFolderChanged(path);
}

bool Settings::groupByType() const {
    return read(groupByTypeKey).toBool();
}

void Settings::setGroupByType(bool group) {
    if (write(groupByTypeKey, group)) emit groupByTypeChanged(group);
}

int Settings::sidebarWidth() const {
    return read(sidebarWidthKey).toInt();
}

void Settings::setSidebarWidth(int width) {
    if (write(sidebarWidthKey, width)) emit sidebarWidthChanged(width);
}

std::optional<QStringList> Settings::pins() const {
    auto suite = pinSuite();
    suite->sync(); // another process may have written since
    if (!suite->contains(QLatin1String(pinsKey))) return std::nullopt;
    const QVariant value = suite->value(QLatin1String(pinsKey));
    return value.canConvert<QStringList>() ? value.toStringList() : QStringList();
}

void Settings::setPins(const QStringList& stored) {
    auto suite = pinSuite();
    suite->setValue(QLatin1String(pinsKey), stored);
    suite->sync();
    emit pinsChanged();
}

std::optional<QStringList> Settings::visibleColumns() const {
    const QVariant value = read(visibleColumnsKey);
    if (!value.isValid()) return std::nullopt;
    return value.toStringList();
}

void Settings::setVisibleColumns(const QStringList& keys) {
    if (write(visibleColumnsKey, keys)) emit visibleColumnsChanged(keys);
}

bool Settings::dimensionsIntroduced() const {
    return read(dimensionsIntroducedKey).toBool();
}

void Settings::setDimensionsIntroduced(bool introduced) {
    write(dimensionsIntroducedKey, introduced);
}

QByteArray Settings::detailsHeader() const {
    return read(detailsHeaderKey).toByteArray();
}

void Settings::setDetailsHeader(const QByteArray& state) {
    if (write(detailsHeaderKey, state)) emit detailsHeaderChanged();
}

bool Settings::showsWaveform() const {
    return read(waveformKey).toBool();
}

void Settings::setShowsWaveform(bool shows) {
    if (write(waveformKey, shows)) emit waveformChanged(shows);
}

std::optional<bool> Settings::automaticUpdateChecks() const {
    const QVariant value = read(automaticUpdateChecksKey);
    if (!value.isValid()) return std::nullopt;
    return value.toBool();
}

void Settings::setAutomaticUpdateChecks(bool checks) {
    write(automaticUpdateChecksKey, checks);
}

bool Settings::updateDefaultsApplied() const {
    return read(updateDefaultsKey).toBool();
}

void Settings::setUpdateDefaultsApplied() {
    write(updateDefaultsKey, true);
}

QDateTime Settings::lastUpdateCheck() const {
    return read(lastUpdateCheckKey).toDateTime();
}

void Settings::setLastUpdateCheck(const QDateTime& when) {
    write(lastUpdateCheckKey, when);
}

QVariantMap Settings::defaultBrowserSnapshot() const {
    return read(defaultBrowserSnapshotKey).toMap();
}

void Settings::setDefaultBrowserSnapshot(const QVariantMap& state) {
    write(defaultBrowserSnapshotKey, state);
    store->sync();
}

QVariantMap Settings::defaultBrowserPending() const {
    return read(defaultBrowserPendingKey).toMap();
}

void Settings::setDefaultBrowserPending(const QVariantMap& state) {
    if (state.isEmpty())
        store->remove(QLatin1String(defaultBrowserPendingKey));
    else
        write(defaultBrowserPendingKey, state);
    store->sync();
}

QHash<QString, QString> Settings::folderColors() const {
    QHash<QString, QString> colors;
    const QVariantMap stored = read(folderColorsKey).toMap();
    for (auto it = stored.cbegin(); it != stored.cend(); ++it)
        if (it->typeId() == QMetaType::QString) colors.insert(it.key(), it->toString());
    return colors;
}

void Settings::setFolderColors(const QHash<QString, QString>& colors) {
    QVariantMap stored;
    for (auto it = colors.cbegin(); it != colors.cend(); ++it)
        stored.insert(it.key(), *it);
    write(folderColorsKey, stored);
}

} // namespace orvane
