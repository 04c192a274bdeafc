#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QHash>
#include <QObject>
#include <QSettings>
#include <QStringList>
#include <memory>
#include <optional>

namespace orvane {

// Every setting a person keeps, typed, each written the moment it changes under the key it has
// always had, so nothing stored by an earlier version is lost. Nothing is written at quit.
class Settings : public QObject {
    Q_OBJECT
public:
    static constexpr const char* lastFolderKey = "lastFolder";
    static constexpr const char* groupByTypeKey = "sort.groupByType.v1";
    static constexpr const char* sidebarWidthKey = "sidebar.width.v2";
    static constexpr const char* pinsKey = "pinnedFolders.v1";
    static constexpr const char* visibleColumnsKey = "details.visibleColumns.v1";
    static constexpr const char* dimensionsIntroducedKey = "details.dimensionsIntroduced.v1";
    static constexpr const char* detailsHeaderKey = "Quilland.DetailsColumns.v1";
    static constexpr const char* waveformKey = "audio.waveform";
    static constexpr const char* automaticUpdateChecksKey = "SUEnableAutomaticChecks";
    static constexpr const char* updateDefaultsKey = "updates.publicDefaults.v1";
    static constexpr const char* lastUpdateCheckKey = "SULastCheckTime";
    static constexpr const char* defaultBrowserSnapshotKey = "defaultBrowser.originalState.v1";
    static constexpr const char* defaultBrowserPendingKey = "defaultBrowser.pendingChange.v1";
    static constexpr const char* folderColorsKey = "folder.colors.v1";

    // The user's own preferences.
    explicit Settings(QObject* parent = nullptr);
    // Everything in one file of its own: a test's.
    explicit Settings(const QString& file, QObject* parent = nullptr);
    ~Settings() override;

    // Not kept while the built-in battery runs.
    QString lastFolder() const;
    void setLastFolder(const QString& path);
    bool groupByType() const;
    void setGroupByType(bool group);
    // 0 until the person drags the navigation pane's edge.
    int sidebarWidth() const;
    void setSidebarWidth(int width);
    // Stored forms of the Quick access pins; nothing until first written, so an emptied list stays
    // empty. In a suite of their own while the built-in battery runs.
    std::optional<QStringList> pins() const;
    void setPins(const QStringList& stored);
    // Nothing until first written.
    std::optional<QStringList> visibleColumns() const;
    void setVisibleColumns(const QStringList& keys);
    bool dimensionsIntroduced() const;
    void setDimensionsIntroduced(bool introduced);
    // The details header's own bytes (widths, hidden sections).
    QByteArray detailsHeader() const;
    void setDetailsHeader(const QByteArray& state);
    // Off until the person turns it on.
    bool showsWaveform() const;
    void setShowsWaveform(bool shows);
    // Nothing until the person (or the first start) chooses.
    std::optional<bool> automaticUpdateChecks() const;
    void setAutomaticUpdateChecks(bool checks);
    // Whether the first start has turned automatic checks on once.
    bool updateDefaultsApplied() const;
    void setUpdateDefaultsApplied();
    QDateTime lastUpdateCheck() const;
    void setLastUpdateCheck(const QDateTime& when);
    // The state before the first change of the default folder browser; written once, on disk at once.
    QVariantMap defaultBrowserSnapshot() const;
    void setDefaultBrowserSnapshot(const QVariantMap& state);
    // The state before a change still under way; empty once it ended, so a crash leaves it behind.
    QVariantMap defaultBrowserPending() const;
    void setDefaultBrowserPending(const QVariantMap& state);
    // Folder identity to "#RRGGBB"; anything stored that is not text reads as nothing.
    QHash<QString, QString> folderColors() const;
    void setFolderColors(const QHash<QString, QString>& colors);

signals:
    void lastFolderChanged(const QString& path);
    void groupByTypeChanged(bool group);
    void sidebarWidthChanged(int width);
    void pinsChanged();
    void visibleColumnsChanged(const QStringList& keys);
    void detailsHeaderChanged();
    void waveformChanged(bool shows);

private:
    QVariant read(const char* key) const;
    // Writes and tells whether the value changed.
    bool write(const char* key, const QVariant& value);
    std::unique_ptr<QSettings> pinSuite() const;

    QString file;
    std::unique_ptr<QSettings> store;
};

} // namespace orvane
