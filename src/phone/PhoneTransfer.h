#pragma once

#include "phone/PhoneItem.h"
#include "phone/UploadPlan.h"

#include <QByteArray>
#include <QList>
#include <functional>
#include <memory>

namespace orvane {

// Carries files and whole folders between this computer and a phone with "put" and "get", one file
// at a time (several small ones to a request), never overwriting anything on either side. Everything stops at
// the first error; what was sent stays. Made with std::make_shared: each step's callback keeps the transfer
// alive.
class PhoneTransfer : public std::enable_shared_from_this<PhoneTransfer> {
public:
    using Done = std::function<void(const std::optional<QString>& error)>;

    // Called with 0 as each file starts, then with the bridge's fractions for that file.
    std::function<void(double fraction)> progress;

    // Usable as a file name on both sides.
    static bool valid(const QString& name);

    // `paths` are local files and folders, sent into the phone folder `parent`.
    void upload(const QList<QByteArray>& paths, const PhoneItem& parent, Done done);
    // `folder` is a local directory; each file arrives whole under its name or not at all.
    void download(const QList<PhoneItem>& items, const QByteArray& folder, Done done);

    static QString existsText();
    // The hidden name prefix of a file that is still arriving.
    static QByteArray stagingPrefix();

private:
    using Nodes = QList<UploadNode>;
    void sendLevel(const Nodes* nodes, const PhoneItem& parent, Done done);
    void sendNext(const Nodes* nodes, qsizetype index, const PhoneItem& parent, Done done);
    void sendFolder(const UploadNode& node, const PhoneItem& parent, Done next);
    void sendFiles(const Nodes* nodes, qsizetype index, const PhoneItem& parent, Done done);

    void fetchNext(std::shared_ptr<const QList<PhoneItem>> items, qsizetype index, const QByteArray& folder,
                   Done done);
    void fetchFolder(const PhoneItem& item, const QByteArray& destination, Done next);
    void fetchFiles(std::shared_ptr<const QList<PhoneItem>> items, qsizetype index, const QByteArray& folder,
                    Done done);
    struct Staged {
        QString name;
        QByteArray staging;
        QByteArray destination;
    };
    static std::optional<QString> settle(const QList<Staged>& staged, const std::optional<QString>& failed);
    std::function<void(double)> forwarder() const;

    std::shared_ptr<const UploadPlan> plan;
};

} // namespace orvane
