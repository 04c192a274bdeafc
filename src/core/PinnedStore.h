#pragma once

#include <QList>
#include <QUrl>

namespace orvane {

class Settings;

// The ordered Quick access pins. The settings are the truth (another process may write them);
// `urls` is a cache. Every change reloads first, applies itself and saves, which signals the
// settings' `pinsChanged`.
class PinnedStore {
public:
    explicit PinnedStore(Settings& settings);

    Settings& settings() const { return prefs; }

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

    Settings& prefs;
    QList<QUrl> list;
};

} // namespace orvane
