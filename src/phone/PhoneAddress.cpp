#include "phone/PhoneAddress.h"

#include "phone/PhoneBridge.h"
#include "phone/PhoneLocation.h"
#include "phone/PhoneProtocol.h"

#include <QUrl>
#include <memory>

namespace orvane {

namespace {
const QString phoneTitle = QStringLiteral("Android USB");

struct Walk {
    QStringList names;
    QList<PhoneItem> chain;
    std::function<void(const PhoneAddress::Outcome&)> done;
};

QStringList pathNames(const QString& path) {
    QStringList names = path.split(u'/', Qt::SkipEmptyParts);
    if (!names.isEmpty() && names.first() == phoneTitle) names.removeFirst();
    return names;
}

void step(std::shared_ptr<Walk> walk) {
    if (walk->chain.size() == walk->names.size()) return walk->done({walk->chain, {}});
    const QList<PhoneItem>& chain = walk->chain;
    const QStringList request = chain.isEmpty() ? PhoneProtocol::storages()
                                                : PhoneProtocol::list(chain.last().storage, chain.last().id);
    PhoneBridge::run(request, nullptr, [walk](const PhoneReply& reply) {
        if (reply.error) return walk->done({std::nullopt, *reply.error});
        const QString& wanted = walk->names.at(walk->chain.size());
        for (const PhoneItem& item : reply.items.value_or(QList<PhoneItem>()))
            if (item.folder && item.name == wanted) {
                walk->chain.append(item);
                return step(walk);
            }
        walk->done({std::nullopt, QStringLiteral("Folder not found: ") + wanted});
    });
}
} // namespace

// An android:// address without a chain still names its folders in its path, so it is walked.
std::optional<QStringList> PhoneAddress::names(const QString& text) {
    const QString typed = text.trimmed();
    if (typed.startsWith(QLatin1String("android:"), Qt::CaseInsensitive)) {
        const QUrl address(typed);
        if (address.isValid() && address.scheme() == QLatin1String("android") &&
            address.query().contains(QLatin1String("location=")) && PhoneLocation::decode(address))
            return std::nullopt;
        if (address.isValid()) return pathNames(address.path(QUrl::FullyDecoded));
        const QString rest = typed.mid(8);
        return pathNames(rest.startsWith(QLatin1String("//phone")) ? rest.mid(7) : rest);
    }
    return pathNames(typed);
}

void PhoneAddress::resolve(const QString& text, std::function<void(const Outcome&)> done) {
    const std::optional<QStringList> walked = names(text);
    if (!walked) return done({PhoneLocation::decode(QUrl(text.trimmed())), {}});
    auto walk = std::make_shared<Walk>();
    walk->names = *walked;
    walk->done = std::move(done);
    step(walk);
}

} // namespace orvane
