#pragma once

#include "properties/PropertiesFileFacts.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QUrl>
#include <vector>

namespace orvane {

// The items of one Properties window and the texts that describe them together.
class PropertiesSelection {
public:
    // Standardized URLs, duplicates by path dropped, first occurrence kept.
    explicit PropertiesSelection(const QList<QUrl>& urls);

    const QList<QUrl>& urls() const { return items; }
    QString windowTitle() const;
    // The name beside the icon: the one item's name, or "3 items selected".
    QString headerText() const;
    QString pathsText() const;

    // An item's name: its last path component, or the system volume's name for the root.
    static QString itemName(const QUrl& url);
    // One value for every item: that value; none gives "Unavailable"; differing ones "Multiple values".
    static QString shared(const QStringList& values);
    // The rows that come from the facts, each combined over all items by `shared`.
    static QHash<QString, QString> factRows(const std::vector<PropertiesFileFacts>& facts);
    // The "Opens with" row; `application` is the default application of a single file, if any.
    static QString opensText(const std::vector<PropertiesFileFacts>& facts, const QString& application);

    static const QStringList& factKeys();

private:
    QList<QUrl> items;
};

} // namespace orvane
