#include "core/NaturalOrder.h"

namespace orvane {

namespace {
// Qt's C-locale collator ignores numeric mode, so a process started without LANG would put
// "file10" before "file2". Any real locale knows digits; English is the neutral choice.
QLocale collationLocale() {
    const QLocale system;
    if (system.language() == QLocale::C || system.language() == QLocale::AnyLanguage)
        return QLocale(QLocale::English, QLocale::UnitedStates);
    return system;
}
} // namespace

NaturalOrder::NaturalOrder() : collator(collationLocale()) {
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    collator.setIgnorePunctuation(false);
}

int NaturalOrder::compare(const QString& a, const QString& b) const {
    const int c = collator.compare(a, b);
    return c < 0 ? -1 : (c > 0 ? 1 : 0);
}

const NaturalOrder& NaturalOrder::shared() {
    thread_local const NaturalOrder order;
    return order;
}

} // namespace orvane
