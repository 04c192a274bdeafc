#include "core/EntryText.h"

#include "platform/NativePath.h"

#include <QLocale>
#include <cmath>

namespace orvane {

namespace {
const char* const units[] = {"KB", "MB", "GB", "TB", "PB", "EB"};
const int fractionDigits[] = {0, 1, 2, 2, 2, 2};

QString trimmedNumber(double value, int digits) {
    QString text = QLocale(QLocale::English, QLocale::UnitedStates).toString(value, 'f', digits);
    if (text.contains(u'.')) {
        while (text.endsWith(u'0'))
            text.chop(1);
        if (text.endsWith(u'.')) text.chop(1);
    }
    return text;
}
} // namespace

QString byteCountText(qint64 bytes) {
    if (bytes == 0) return QStringLiteral("Zero KB");
    if (bytes == 1) return QStringLiteral("1 byte");
    if (bytes < 1000 && bytes > -1000) return QString::number(bytes) + QStringLiteral(" bytes");
    double value = double(bytes) / 1000.0;
    int unit = 0;
    // Move up a unit when rounding would print 1000 of this one.
    while (unit < 5) {
        const double scale = std::pow(10.0, fractionDigits[unit]);
        if (std::fabs(std::round(value * scale) / scale) < 1000.0) break;
        value /= 1000.0;
        ++unit;
    }
    return trimmedNumber(value, fractionDigits[unit]) + u' ' + QLatin1String(units[unit]);
}

QString dateText(const QDateTime& date) {
    if (!date.isValid()) return QStringLiteral("—");
    return QLocale::c().toString(date.toLocalTime(), QStringLiteral("M/d/yyyy h:mm AP"));
}

QString columnText(const QString& key, const Entry& entry) {
    if (key == QLatin1String("name")) return entry.name();
    if (key == QLatin1String("modified")) return dateText(entry.modified);
    if (key == QLatin1String("created")) return dateText(entry.created);
    if (key == QLatin1String("kind")) return entry.kind;
    if (key == QLatin1String("size")) return entry.directory ? QString() : byteCountText(entry.size);
    if (key == QLatin1String("folder")) return folderOf(entry);
    if (key == QLatin1String("origin")) return NativePath::display(originFolderOf(entry));
    if (key == QLatin1String("deleted")) return dateText(entry.added);
    return {};
}

QString folderOf(const Entry& entry) {
    if (entry.isPhone()) return {};
    const qsizetype slash = entry.location.lastIndexOf(u'/');
    return slash <= 0 ? QStringLiteral("/") : entry.location.left(slash);
}

QString originFolderOf(const Entry& entry) {
    const qsizetype slash = entry.origin.lastIndexOf(u'/');
    return slash < 0 ? QString() : slash == 0 ? QStringLiteral("/") : entry.origin.left(slash);
}

} // namespace orvane
