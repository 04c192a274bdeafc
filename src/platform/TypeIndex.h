#pragma once

#include <QHash>
#include <QRegularExpression>
#include <QString>
#include <vector>

namespace orvane {

// The type database's file-name globs, indexed once, so naming the type of 100,000 files costs a
// hash lookup each instead of a pass over every pattern.
class TypeIndex {
public:
    TypeIndex();
    // The type's description, or an empty text when no pattern matches.
    QString describe(const QString& fileName) const;

private:
    struct Pattern {
        QRegularExpression expression;
        QString description;
        int weight;
    };
    struct Hit {
        QString description;
        int weight = -1;
        qsizetype length = 0;
    };
    void add(const QString& glob, const QString& description, int weight);
    static void offer(Hit& best, const QString& description, int weight, qsizetype length);

    QHash<QString, Hit> literals; // whole names, lower case
    QHash<QString, Hit> suffixes; // ".ext" forms, lower case
    std::vector<Pattern> others;
};

} // namespace orvane
