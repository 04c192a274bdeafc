#include "properties/PropertiesSelection.h"

#include "platform/Platform.h"

#include <QDir>
#include <QSet>
#include <algorithm>

namespace orvane {

namespace {

QUrl standardized(const QUrl& url) {
    if (!url.isLocalFile()) return url.adjusted(QUrl::NormalizePathSegments | QUrl::StripTrailingSlash);
    return QUrl::fromLocalFile(QDir::cleanPath(url.toLocalFile()));
}

QString pathOf(const QUrl& url) {
    return url.isLocalFile() ? url.toLocalFile() : url.toString();
}

} // namespace

PropertiesSelection::PropertiesSelection(const QList<QUrl>& urls) {
    QSet<QString> seen;
    for (const QUrl& url : urls) {
        const QUrl clean = standardized(url);
        if (seen.contains(pathOf(clean))) continue;
        seen.insert(pathOf(clean));
        items.append(clean);
    }
}

QString PropertiesSelection::itemName(const QUrl& url) {
    const QString name = pathOf(url).section(u'/', -1);
    return name.isEmpty() ? Platform::instance().word(PlatformWord::RootVolume) : name;
}

QString PropertiesSelection::windowTitle() const {
    if (items.size() == 1) return itemName(items.front()) + QStringLiteral(" Properties");
    return QString::number(items.size()) + QStringLiteral(" Items Properties");
}

QString PropertiesSelection::headerText() const {
    if (items.size() == 1) return itemName(items.front());
    return QString::number(items.size()) + QStringLiteral(" items selected");
}

QString PropertiesSelection::pathsText() const {
    QStringList paths;
    for (const QUrl& url : items)
        paths << pathOf(url);
    return paths.join(u'\n');
}

QString PropertiesSelection::shared(const QStringList& values) {
    if (values.isEmpty()) return PropertiesFileFacts::unavailable();
    for (const QString& value : values)
        if (value != values.front()) return QStringLiteral("Multiple values");
    return values.front();
}

const QStringList& PropertiesSelection::factKeys() {
    static const QStringList keys = {
        QStringLiteral("type"),     QStringLiteral("location"),    QStringLiteral("created"),
        QStringLiteral("modified"), QStringLiteral("accessed"),    QStringLiteral("owner"),
        QStringLiteral("group"),    QStringLiteral("permissions"), QStringLiteral("target"),
        QStringLiteral("access"),   QStringLiteral("attributes"),
    };
    return keys;
}

QHash<QString, QString> PropertiesSelection::factRows(const std::vector<PropertiesFileFacts>& facts) {
    QHash<QString, QString> rows;
    for (const QString& key : factKeys()) {
        QStringList values;
        for (const PropertiesFileFacts& item : facts)
            values << item.text(key);
        rows.insert(key, shared(values));
    }
    return rows;
}

QString PropertiesSelection::opensText(const std::vector<PropertiesFileFacts>& facts,
                                       const QString& application) {
    const bool allFolders = !facts.empty() && std::all_of(facts.begin(), facts.end(), [](const auto& f) {
        return f.isDirectory && !f.error;
    });
    if (allFolders) return QStringLiteral("Not applicable to folders");
    if (facts.size() != 1) return QStringLiteral("Multiple file types");
    if (facts.front().error) return PropertiesFileFacts::unavailable();
    return application.isEmpty() ? QStringLiteral("No default application") : application;
}

} // namespace orvane
