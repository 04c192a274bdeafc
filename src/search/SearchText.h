#pragma once

#include <QString>

namespace orvane {

// The name tests of the search scopes, kept apart so the walker, the index and the phone agree.
namespace SearchText {

// Case folded and, with `diacritics`, stripped of combining marks after canonical decomposition:
// "Résumé" and "RESUME" fold alike.
QString fold(const QString& text, bool diacritics);

// The folder walk's test: the name contains `text`, ignoring case only.
bool containsIgnoringCase(const QString& name, const QString& text);

// The index's and the phone's test: ignoring case and diacritics. `folded` is fold(text, true).
bool containsFolded(const QString& name, const QString& folded);

// The last component of a slash-separated path.
QStringView fileName(QStringView path);

// True when any component of `path` begins with a dot.
bool hasHiddenComponent(QStringView path);

} // namespace SearchText

} // namespace orvane
