#pragma once

#include <QColor>
#include <QHash>
#include <QList>
#include <QObject>
#include <QStringList>
#include <QUrl>
#include <optional>

namespace orvane {

class Settings;

// The colour a person gave a folder, local or on a phone, kept under "folder.colors.v1" and held in
// memory, so drawing an icon never reads the settings. A colour follows its folder, and the folders
// inside it, through a rename or move made here.
class FolderColors : public QObject {
    Q_OBJECT
public:
    // The colour that stands for an uncoloured folder.
    static constexpr const char* defaultHex = "#FFD65A";

    explicit FolderColors(Settings& settings, QObject* parent = nullptr);

    // "#" and six upper-case hexadecimal digits, or nothing.
    static std::optional<QString> normalize(const QString& text);
    static QColor color(const QString& hex);
    // "android:" and the path for a phone folder; the clean path for any other.
    static QString key(const QUrl& url);
    // The same for an entry's location, a path or a phone address.
    static QString keyOf(const QString& location);

    std::optional<QString> hex(const QUrl& url) const;
    std::optional<QString> hexAt(const QString& folderKey) const;
    // One colour for many folders, written once; no colour removes them.
    void set(const std::optional<QString>& hex, const QList<QUrl>& urls);
    // The same for entries' locations, which keep a path's exact bytes.
    void setAt(const std::optional<QString>& hex, const QStringList& locations);
    // A folder renamed or moved (locations, as entries hold them): its colour and those below it go
    // with it.
    void moved(const QString& from, const QString& to);

signals:
    void changed();

private:
    void store(const std::optional<QString>& hex, const QStringList& keys);

    Settings& prefs;
    QHash<QString, QString> values;
};

} // namespace orvane
