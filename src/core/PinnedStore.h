#pragma once

#include <QList>
#include <QSettings>
#include <QUrl>
#include <memory>

namespace orvane {

// The ordered Quick access pins of one window. The preferences are the truth; `urls` is this
// window's cache. Every change reloads first, applies itself, saves and posts one notification.
class PinnedStore {
public:
    static constexpr const char* defaultsKey = "pinnedFolders.v1";
    static constexpr const char* panePinsChanged = "Quilland.pinsChanged";

    explicit PinnedStore(std::unique_ptr<QSettings> defaults);

    const QList<QUrl>& urls() const { return list; }
    void reload();
    bool contains(const QUrl& url) const;
    bool pin(const QUrl& url);
    bool unpin(const QUrl& url);
    // `slot` is a gap between rows: 0 before the first, count() after the last.
    bool move(const QUrl& url, int slot);
    // Carries a local rename or move into the pins, descendants included.
    bool replace(const QUrl& oldURL, const QUrl& newURL);

    // The standardised file URL with symbolic links resolved as far as the disk allows.
    static QUrl canonical(const QUrl& url);

private:
    static bool accepted(const QUrl& url);
    static bool isPhone(const QUrl& url) { return url.scheme() == QLatin1String("android"); }
    static QString identity(const QUrl& url);
    static QString storedForm(const QUrl& url);
    int indexOf(const QString& identityPath) const;
    void seedIfNeeded();
    void save();

    std::unique_ptr<QSettings> defaults;
    QList<QUrl> list;
};

} // namespace orvane
