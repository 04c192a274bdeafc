#include "phone/PhoneNames.h"

#include "core/Entry.h"

#include "phone/PhoneLocation.h"

namespace orvane {

namespace {
const QString phoneTitle = QStringLiteral("Android USB");
}

QString phoneFolderName(const QUrl& address) {
    const std::optional<QList<PhoneItem>> chain = PhoneLocation::decode(address);
    return chain && !chain->isEmpty() ? chain->last().name : phoneTitle;
}

// The last path component, read without a full URL parse: listings ask for it for every entry.
QString phoneItemName(const QString& address) {
    qsizetype end = address.size();
    for (QChar stop : {u'?', u'#'}) {
        const qsizetype at = address.indexOf(stop);
        if (at >= 0 && at < end) end = at;
    }
    QStringView path = QStringView(address).left(end);
    if (const qsizetype authority = path.indexOf(QLatin1String("//")); authority >= 0) {
        const qsizetype start = path.indexOf(u'/', authority + 2);
        path = start < 0 ? QStringView() : path.mid(start);
    }
    const QString name = QUrl::fromPercentEncoding(path.mid(path.lastIndexOf(u'/') + 1).toUtf8());
    return name.isEmpty() ? phoneTitle : name;
}

void registerPhoneNames() {
    static const bool once = (setForeignNames({&phoneItemName, &phoneFolderName}), true);
    Q_UNUSED(once);
}

} // namespace orvane
