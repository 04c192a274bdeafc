#pragma once

#include "phone/PhoneBridge.h"
#include "support/TempTree.h"

#include <QDir>
#include <QFile>
#include <QMap>
#include <QTest>
#include <unistd.h>

namespace orvane::test {

// What one request brought back, in the order the callbacks ran.
struct Outcome {
    PhoneReply reply;
    QList<double> progress;
    QStringList events; // "progress" and "done", as delivered
    bool finished = false;
};

// Runs one request through the real client and bridge and waits for its reply.
inline Outcome call(const QStringList& args, int timeoutMs = 20000) {
    auto outcome = std::make_shared<Outcome>();
    PhoneBridge::run(
        args,
        [outcome](double fraction) {
            outcome->progress << fraction;
            outcome->events << QStringLiteral("progress");
        },
        [outcome](const PhoneReply& reply) {
            outcome->reply = reply;
            outcome->events << QStringLiteral("done");
            outcome->finished = true;
        });
    if (!QTest::qWaitFor([&] { return outcome->finished; }, timeoutMs))
        qWarning("request %s got no reply in time", qPrintable(args.join(u' ')));
    return *outcome;
}

inline const QStringList faultVariables = {QStringLiteral("MTP_BRIDGE_DELAY_MS"),
                                           QStringLiteral("MTP_BRIDGE_HANG_ON"),
                                           QStringLiteral("MTP_BRIDGE_EXIT_AFTER"),
                                           QStringLiteral("MTP_BRIDGE_GARBLE"),
                                           QStringLiteral("MTP_BRIDGE_EMPTY_REPLY"),
                                           QStringLiteral("MTP_BRIDGE_CUT_AFTER_PROGRESS"),
                                           QStringLiteral("MTP_BRIDGE_EXTRA_KEYS"),
                                           QStringLiteral("MTP_BRIDGE_NULL_PROGRESS"),
                                           QStringLiteral("MTP_BRIDGE_ECHO"),
                                           QStringLiteral("MTP_BRIDGE_STALL_MID_TRANSFER"),
                                           QStringLiteral("MTP_BRIDGE_DIE_MID_TRANSFER"),
                                           QStringLiteral("MTP_BRIDGE_FAIL_REPLY"),
                                           QStringLiteral("MTP_BRIDGE_REPEAT_ITEMS"),
                                           QStringLiteral("MTP_BRIDGE_LOCKED"),
                                           QStringLiteral("MTP_BRIDGE_CHARGING_ONLY"),
                                           QStringLiteral("MTP_BRIDGE_HELD")};

// Points the next bridge at a simulated phone in `folder` with the given faults, and makes sure
// the next request starts that bridge afresh.
inline void simulate(const QString& folder, const QMap<QString, QString>& faults = {}) {
    for (const QString& name : faultVariables)
        qunsetenv(name.toLatin1().constData());
    for (auto it = faults.begin(); it != faults.end(); ++it)
        qputenv(it.key().toLatin1().constData(), it.value().toUtf8());
    qputenv("MTP_BRIDGE_SIMULATE", QFile::encodeName(folder));
    PhoneBridge::setExecutable(QString());
    PhoneBridge::setWatchdogLimit(std::chrono::seconds(60));
    PhoneBridge::restart();
}

// Live bridge children of this process, from the kernel's process table; a child that has
// exited but isn't reaped yet no longer counts.
inline QList<int> liveBridges() {
    QList<int> found;
    const QString self = QString::number(::getpid());
    for (const QString& entry : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
        QFile stat(QStringLiteral("/proc/") + entry + QStringLiteral("/stat"));
        if (!stat.open(QIODevice::ReadOnly)) continue;
        const QString text = QString::fromLatin1(stat.readAll());
        const qsizetype close = text.lastIndexOf(u')');
        const QStringList fields = text.mid(close + 2).split(u' ');
        if (text.contains(QLatin1String("(mtp-bridge)")) && fields.size() > 1 && fields[1] == self &&
            fields[0] != QLatin1String("Z"))
            found << entry.toInt();
    }
    return found;
}

inline QByteArray pattern(qint64 size, int seed) {
    QByteArray data(size, Qt::Uninitialized);
    quint32 x = quint32(seed) * 2654435761u + 1;
    for (qint64 i = 0; i < size; ++i) {
        x = x * 1664525u + 1013904223u;
        data[i] = char(x >> 24);
    }
    return data;
}

inline QByteArray readAll(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

inline std::optional<PhoneItem> findNamed(const PhoneReply& reply, const QString& name) {
    for (const PhoneItem& item : reply.items.value_or(QList<PhoneItem>()))
        if (item.name == name) return item;
    return std::nullopt;
}

const QString storage = QStringLiteral("65537");
const QString root = QStringLiteral("4294967295");

} // namespace orvane::test
