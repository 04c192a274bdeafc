#pragma once

#include <QCollator>
#include <QString>

namespace orvane {

// The order of names a person expects: case-insensitive, digit runs compared as numbers, by the
// user's locale. Two names are equal exactly when they differ only in case or in leading zeros.
class NaturalOrder {
public:
    NaturalOrder();
    int compare(const QString& a, const QString& b) const;
    // Keys compare like compare() but cost one memcmp each, for sorting many names.
    QCollatorSortKey key(const QString& text) const { return collator.sortKey(text); }

    static const NaturalOrder& shared();

private:
    QCollator collator;
};

} // namespace orvane
