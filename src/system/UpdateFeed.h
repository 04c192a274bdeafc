#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>
#include <QVersionNumber>
#include <optional>

namespace orvane {

// One release offered by the update feed.
struct UpdateItem {
    QVersionNumber version;
    QString shortVersion;
    QString title;
    QUrl releaseNotes;
};

// The update feed: an appcast whose whole text is signed with the release key (Ed25519), the
// signature and the signed length in a comment at its end. Nothing in it is believed before the
// signature holds, and a feed that declares entities is refused rather than expanded.
class UpdateFeed {
public:
    struct Reading {
        std::optional<UpdateItem> newest; // the highest version listed
        QString error;                    // empty when the feed was sound
    };
    // `publicKey` is the 32 raw bytes of the release key.
    static Reading read(const QByteArray& body, const QByteArray& publicKey);
    static bool verify(const QByteArray& data, const QByteArray& signature, const QByteArray& publicKey);

private:
    static Reading parse(const QByteArray& xml);
};

} // namespace orvane
