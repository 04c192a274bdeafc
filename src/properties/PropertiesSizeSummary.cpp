#include "properties/PropertiesSizeSummary.h"

#include "core/EntryText.h"

#include <QLocale>

namespace orvane {

namespace {

QString grouped(qint64 value) {
    static const QLocale english(QLocale::English, QLocale::UnitedStates);
    return english.toString(value);
}

QString counted(qint64 value, const char* one, const char* many) {
    return grouped(value) + u' ' + QLatin1String(value == 1 ? one : many);
}

const QString atLeast = QStringLiteral("At least ");

} // namespace

PropertiesSizeSummary& PropertiesSizeSummary::operator+=(const PropertiesSizeSummary& other) {
    logicalBytes += other.logicalBytes;
    allocatedBytes += other.allocatedBytes;
    files += other.files;
    folders += other.folders;
    unreadable += other.unreadable;
    unavailableAllocation += other.unavailableAllocation;
    cancelled = cancelled || other.cancelled;
    return *this;
}

QString PropertiesSizeSummary::sizeText() const {
    return (unreadable > 0 ? atLeast : QString()) + bytes(logicalBytes);
}

QString PropertiesSizeSummary::allocatedText() const {
    const bool partial = unreadable > 0 || unavailableAllocation > 0;
    return (partial ? atLeast : QString()) + bytes(allocatedBytes);
}

QString PropertiesSizeSummary::containsText() const {
    return counted(files, "file", "files") + QStringLiteral(", ") +
           counted(folders, "subfolder", "subfolders");
}

QString PropertiesSizeSummary::statusText(bool finished) const {
    // These counts stay ungrouped, and "items" stays plural for one: the status line's own style.
    if (!finished) return QStringLiteral("Calculating… %1 items checked").arg(files + folders);
    if (unreadable > 0) return QStringLiteral("Partial size · %1 items could not be read").arg(unreadable);
    if (unavailableAllocation > 0)
        return QStringLiteral("Disk allocation unavailable for %1 items").arg(unavailableAllocation);
    return QStringLiteral("Properties are read-only");
}

QString bytes(qint64 value) {
    const QString exact = counted(value, "byte", "bytes");
    const QString human = byteCountText(value);
    if (human.simplified() == exact) return exact;
    return human + QStringLiteral(" (") + exact + u')';
}

} // namespace orvane
