#pragma once

#include <QHash>
#include <QList>
#include <QMimeType>
#include <QRegularExpression>
#include <QString>
#include <vector>

namespace orvane {

// The type database's file-name globs, indexed once, so naming the type of 100,000 files costs a
// hash lookup each instead of a pass over every pattern.
//
// Where several types claim the same glob with the same weight, the choice is the same on every
// run and prefers the common type: the one the others specialise ("JSON document" over "JSON
// schema"), then a media type over a program's format, then the type's name.
class TypeIndex {
public:
    // Every type the system knows.
    TypeIndex();
    // Only these types, in any order: the answers do not depend on it.
    explicit TypeIndex(const QList<QMimeType>& types);

    static const TypeIndex& shared();

    // The type's description, or an empty text when no pattern matches.
    QString describe(const QString& fileName) const;
    // The type's name ("application/json"), or an empty text when no pattern matches.
    QString typeName(const QString& fileName) const;

    // The type's comment as a column shows it: a sentence, so it starts with a capital.
    static QString description(const QMimeType& type);
    // Of types that claim a name equally, the one shown.
    static QMimeType mostCommon(const QList<QMimeType>& candidates);

private:
    struct Hit {
        QString type;
        QString description;
    };
    struct Pattern {
        QRegularExpression expression;
        Hit hit;
    };
    void build(QList<QMimeType> types);
    const Hit* find(const QString& fileName) const;

    QHash<QString, Hit> literals; // whole names, lower case
    QHash<QString, Hit> suffixes; // ".ext" forms, lower case, and exact forms of case-sensitive globs
    std::vector<Pattern> others;  // in the order they are tried
};

} // namespace orvane
