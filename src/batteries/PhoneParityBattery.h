#pragma once

#include "phone/PhoneReply.h"
#include "phone/PhoneTransfer.h"

#include <QTemporaryDir>
#include <QTextStream>

namespace orvane {

// The battery behind --phone-parity-test: against whatever phone the bridge finds, inside a scratch
// folder it makes on the phone and removes at the end, checks what the phone views rely on.
// Prints one PASS: or FAIL: line per check and answers the exit status.
class PhoneParityBattery {
public:
    PhoneParityBattery();
    int run();

private:
    bool check(const QString& label, bool ok, const QString& detail = {});
    PhoneReply request(const QStringList& args, QList<double>* progress = nullptr);
    std::optional<PhoneItem> find(quint32 parent, const QString& name, QString* error = nullptr);
    std::optional<quint32> makeFolder(quint32 parent, const QString& name);
    void roundTrip(const QString& label, const QString& name, const QByteArray& content);
    void folders();
    void thumbnail();
    void browsing();
    void transfers();
    void fileOperations();
    std::optional<QString>
    transfer(const std::function<void(PhoneTransfer&, std::function<void(std::optional<QString>)>)>& start);
    QString makeLocal(const QString& relative, const QByteArray& content = {});
    void removeScratch();

    QTextStream out;
    QTemporaryDir local;
    quint32 storage = 0;
    quint32 scratch = 0;
    std::optional<PhoneItem> bigFile;
    std::optional<PhoneItem> arabicFile;
    PhoneItem scratchItem;
    int failures = 0;
};

} // namespace orvane
