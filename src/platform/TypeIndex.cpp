#include "platform/TypeIndex.h"

#include <QMimeDatabase>

namespace orvane {

namespace {
bool hasWildcard(QStringView text) {
    for (QChar c : text)
        if (c == u'*' || c == u'?' || c == u'[') return true;
    return false;
}
} // namespace

TypeIndex::TypeIndex() {
    const QMimeDatabase db;
    for (const QMimeType& type : db.allMimeTypes()) {
        const QString description = type.comment();
        if (description.isEmpty()) continue;
        // The database does not expose glob weights; deeper types (fewer parents) are the generic ones.
        const int weight = 50 + int(type.parentMimeTypes().size());
        for (const QString& glob : type.globPatterns())
            add(glob, description, weight);
    }
}

void TypeIndex::offer(Hit& best, const QString& description, int weight, qsizetype length) {
    if (weight > best.weight || (weight == best.weight && length > best.length))
        best = {description, weight, length};
}

void TypeIndex::add(const QString& glob, const QString& description, int weight) {
    if (!hasWildcard(glob)) {
        offer(literals[glob.toLower()], description, weight, glob.size());
    } else if (glob.startsWith(QLatin1String("*.")) && !hasWildcard(QStringView(glob).mid(1))) {
        offer(suffixes[glob.mid(1).toLower()], description, weight, glob.size());
    } else {
        const QString pattern = QRegularExpression::wildcardToRegularExpression(glob);
        others.push_back(
            {QRegularExpression(pattern, QRegularExpression::CaseInsensitiveOption), description, weight});
    }
}

QString TypeIndex::describe(const QString& fileName) const {
    const QString lower = fileName.toLower();
    if (auto it = literals.constFind(lower); it != literals.constEnd()) return it->description;
    // The longest matching suffix wins: "a.tar.gz" is a compressed tarball, not just gzip.
    for (qsizetype dot = lower.indexOf(u'.', 1); dot >= 0; dot = lower.indexOf(u'.', dot + 1))
        if (auto it = suffixes.constFind(lower.mid(dot)); it != suffixes.constEnd()) return it->description;
    Hit best;
    for (const Pattern& p : others)
        if (p.weight > best.weight && p.expression.match(fileName).hasMatch())
            offer(best, p.description, p.weight, 0);
    return best.description;
}

} // namespace orvane
