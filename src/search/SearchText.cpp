#include "search/SearchText.h"

namespace orvane {

QString SearchText::fold(const QString& text, bool diacritics) {
    if (!diacritics) return text.toCaseFolded();
    const QString decomposed = text.normalized(QString::NormalizationForm_D);
    QString out;
    out.reserve(decomposed.size());
    for (QChar c : decomposed) {
        const QChar::Category category = c.category();
        if (category != QChar::Mark_NonSpacing && category != QChar::Mark_Enclosing &&
            category != QChar::Mark_SpacingCombining)
            out.append(c);
    }
    // Folding case can compose nothing back, so one pass after stripping marks is enough.
    return out.toCaseFolded();
}

bool SearchText::containsIgnoringCase(const QString& name, const QString& text) {
    return name.contains(text, Qt::CaseInsensitive);
}

bool SearchText::containsFolded(const QString& name, const QString& folded) {
    return fold(name, true).contains(folded);
}

QStringView SearchText::fileName(QStringView path) {
    return path.mid(path.lastIndexOf(u'/') + 1);
}

bool SearchText::hasHiddenComponent(QStringView path) {
    for (qsizetype at = path.indexOf(u'/'); at >= 0; at = path.indexOf(u'/', at + 1))
        if (at + 1 < path.size() && path[at + 1] == u'.') return true;
    return !path.isEmpty() && path[0] == u'.';
}

} // namespace orvane
