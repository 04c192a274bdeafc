#include "platform/TypeIndex.h"

#include <QMimeDatabase>
#include <algorithm>

namespace orvane {

namespace {

bool hasWildcard(QStringView text) {
    for (QChar c : text)
        if (c == u'*' || c == u'?' || c == u'[') return true;
    return false;
}

// What people keep most is media; a program's own format that shares its suffix comes after.
int familyRank(const QString& name) {
    static const QLatin1String media[] = {QLatin1String("audio/"), QLatin1String("video/"),
                                          QLatin1String("image/"), QLatin1String("font/"),
                                          QLatin1String("model/")};
    for (const QLatin1String& family : media)
        if (name.startsWith(family)) return 0;
    return name.startsWith(QLatin1String("text/")) ? 1 : 2;
}

} // namespace

TypeIndex::TypeIndex() {
    build(QMimeDatabase().allMimeTypes());
}

TypeIndex::TypeIndex(const QList<QMimeType>& types) {
    build(types);
}

const TypeIndex& TypeIndex::shared() {
    static const TypeIndex index;
    return index;
}

QMimeType TypeIndex::mostCommon(const QList<QMimeType>& candidates) {
    if (candidates.isEmpty()) return {};
    struct Ranked {
        int specialisedBy;
        int family;
        const QMimeType* type;
    };
    std::vector<Ranked> ranked;
    for (const QMimeType& type : candidates) {
        int children = 0;
        for (const QMimeType& other : candidates)
            if (other != type && other.inherits(type.name())) ++children;
        ranked.push_back({children, familyRank(type.name()), &type});
    }
    const auto best = std::min_element(ranked.begin(), ranked.end(), [](const Ranked& a, const Ranked& b) {
        if (a.specialisedBy != b.specialisedBy) return a.specialisedBy > b.specialisedBy;
        if (a.family != b.family) return a.family < b.family;
        return a.type->name() < b.type->name();
    });
    return *best->type;
}

// The database's own texts are not consistent: "PDF document" beside "plain text document".
QString TypeIndex::description(const QMimeType& type) {
    QString text = type.comment();
    if (!text.isEmpty()) text[0] = text[0].toUpper();
    return text;
}

// A name or suffix claimed by several types is settled by the database itself, which knows the glob
// weights and which globs are case-sensitive; only its ties are ours to break.
void TypeIndex::build(QList<QMimeType> types) {
    const QMimeDatabase db;
    QHash<QString, QMimeType> known;
    for (const QMimeType& type : types)
        if (!type.comment().isEmpty()) known.insert(type.name(), type);
    struct Claims {
        QString sample;
        QStringList types;
    };
    QHash<QString, Claims> literalClaims;
    QHash<QString, Claims> suffixClaims;
    auto claim = [](QHash<QString, Claims>& table, const QString& key, const QString& sample,
                    const QString& type) {
        Claims& c = table[key];
        c.sample = sample;
        if (!c.types.contains(type)) c.types << type;
    };
    struct Loose {
        qsizetype length;
        int family;
        QString glob;
        Hit hit;
    };
    std::vector<Loose> loose;
    for (const QMimeType& type : std::as_const(known)) {
        for (const QString& glob : type.globPatterns()) {
            if (!hasWildcard(glob)) {
                claim(literalClaims, glob.toLower(), glob, type.name());
            } else if (glob.startsWith(QLatin1String("*.")) && !hasWildcard(QStringView(glob).mid(1))) {
                const QString suffix = glob.mid(1);
                claim(suffixClaims, suffix.toLower(), u'x' + suffix.toLower(), type.name());
                if (suffix != suffix.toLower()) claim(suffixClaims, suffix, u'x' + suffix, type.name());
            } else {
                loose.push_back(
                    {glob.size(), familyRank(type.name()), glob, {type.name(), description(type)}});
            }
        }
    }
    auto settle = [&](const QHash<QString, Claims>& claims, QHash<QString, Hit>& table) {
        for (auto it = claims.cbegin(); it != claims.cend(); ++it) {
            QMimeType chosen = known.value(it->types.front());
            if (it->types.size() > 1) {
                QList<QMimeType> candidates = db.mimeTypesForFileName(it->sample);
                candidates.removeIf([&](const QMimeType& t) { return !known.contains(t.name()); });
                chosen = mostCommon(candidates);
            }
            if (chosen.isValid()) table.insert(it.key(), {chosen.name(), description(chosen)});
        }
    };
    settle(literalClaims, literals);
    settle(suffixClaims, suffixes);
    // The longest pattern is the most specific; equals are taken in a fixed order.
    std::sort(loose.begin(), loose.end(), [](const Loose& a, const Loose& b) {
        if (a.length != b.length) return a.length > b.length;
        if (a.family != b.family) return a.family < b.family;
        return std::tie(a.hit.type, a.glob) < std::tie(b.hit.type, b.glob);
    });
    for (Loose& l : loose)
        others.push_back({QRegularExpression(QRegularExpression::wildcardToRegularExpression(l.glob),
                                             QRegularExpression::CaseInsensitiveOption),
                          std::move(l.hit)});
}

const TypeIndex::Hit* TypeIndex::find(const QString& fileName) const {
    const QString lower = fileName.toLower();
    if (auto it = literals.constFind(lower); it != literals.constEnd()) return &*it;
    // The longest matching suffix wins: "a.tar.gz" is a compressed tarball, not just gzip.
    const bool mixedCase = lower != fileName;
    for (qsizetype dot = lower.indexOf(u'.', 1); dot >= 0; dot = lower.indexOf(u'.', dot + 1)) {
        if (mixedCase)
            if (auto it = suffixes.constFind(fileName.mid(dot)); it != suffixes.constEnd()) return &*it;
        if (auto it = suffixes.constFind(lower.mid(dot)); it != suffixes.constEnd()) return &*it;
    }
    for (const Pattern& p : others)
        if (p.expression.match(fileName).hasMatch()) return &p.hit;
    return nullptr;
}

QString TypeIndex::describe(const QString& fileName) const {
    const Hit* hit = find(fileName);
    return hit ? hit->description : QString();
}

QString TypeIndex::typeName(const QString& fileName) const {
    const Hit* hit = find(fileName);
    return hit ? hit->type : QString();
}

} // namespace orvane
