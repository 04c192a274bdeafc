#include "phone/PhoneLocation.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>

namespace orvane {

namespace {
const QLatin1String scheme("android");
const QLatin1String locationKey("location");

std::optional<QList<PhoneItem>> chainFromJson(const QByteArray& json) {
    QJsonParseError parse;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parse);
    if (parse.error != QJsonParseError::NoError || !document.isArray()) return std::nullopt;
    QList<PhoneItem> chain;
    for (const QJsonValue& value : document.array()) {
        std::optional<PhoneItem> item = PhoneItem::fromJson(value);
        if (!item || !item->folder || item->name.contains(u'/')) return std::nullopt;
        chain.append(std::move(*item));
    }
    return chain;
}

std::optional<QList<PhoneItem>> chainFromBase64(const QByteArray& text) {
    if (text.size() % 4 != 0) return std::nullopt;
    const auto bytes = QByteArray::fromBase64Encoding(text, QByteArray::Base64Encoding |
                                                                QByteArray::AbortOnBase64DecodingErrors);
    if (!bytes) return std::nullopt;
    return chainFromJson(*bytes);
}
} // namespace

QUrl PhoneLocation::url(const QList<PhoneItem>& history) {
    QStringList names;
    QJsonArray chain;
    for (const PhoneItem& item : history) {
        names << item.name;
        chain.append(item.toJson());
    }
    QUrl address;
    address.setScheme(scheme);
    address.setHost(QStringLiteral("phone"));
    address.setPath(u'/' + names.join(u'/'), QUrl::DecodedMode);
    if (!history.isEmpty()) {
        const QByteArray base64 = QJsonDocument(chain).toJson(QJsonDocument::Compact).toBase64();
        address.setQuery(locationKey + u'=' +
                             QString::fromLatin1(QUrl::toPercentEncoding(QString::fromLatin1(base64), "/=")),
                         QUrl::StrictMode);
    }
    Q_ASSERT(address.isValid());
    return address;
}

// Only the first "location" item of the query counts; "+" is a plus, never a space.
std::optional<QList<PhoneItem>> PhoneLocation::decode(const QUrl& url) {
    if (url.scheme() != scheme || !url.isValid()) return std::nullopt;
    const QString query = url.query(QUrl::FullyEncoded);
    for (const QString& part : query.split(u'&')) {
        const qsizetype equals = part.indexOf(u'=');
        const QString key =
            QUrl::fromPercentEncoding(part.left(equals < 0 ? part.size() : equals).toLatin1());
        if (key != locationKey) continue;
        if (equals < 0) return QList<PhoneItem>();
        return chainFromBase64(QByteArray::fromPercentEncoding(part.mid(equals + 1).toLatin1()));
    }
    return QList<PhoneItem>();
}

std::optional<QDateTime> phoneDate(const std::optional<QString>& text) {
    if (!text) return std::nullopt;
    static const QRegularExpression pattern(
        QStringLiteral("^(\\d{4})(\\d{2})(\\d{2})T(\\d{2})(\\d{2})(\\d{2})$"));
    const QRegularExpressionMatch match = pattern.match(text->left(15));
    if (!match.hasMatch()) return std::nullopt;
    const auto field = [&](int n) { return match.capturedView(n).toInt(); };
    const QDate day(field(1), field(2), field(3));
    const QTime time(field(4), field(5), field(6));
    if (!day.isValid() || !time.isValid()) return std::nullopt;
    return QDateTime(day, time, Qt::LocalTime);
}

} // namespace orvane
