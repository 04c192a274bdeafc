#pragma once

#include "phone/PhoneControls.h"
#include "phone/PhoneListing.h"
#include "phone/PhoneReply.h"

#include <QObject>
#include <functional>
#include <memory>

namespace orvane {

class PhoneTransfer;

// The state of one phone tab, without widgets: where it is, what it lists, whether an operation
// holds it, and the status text. The window owns navigation: `navigateTo` asks it to go somewhere,
// and the tab then comes back through setHistory and reload. Every command refuses to run while
// the browser is busy, which keeps phone operations strictly one at a time per tab.
class PhoneBrowserState : public QObject {
    Q_OBJECT

public:
    using Done = std::function<void(const std::optional<QString>& error)>;

    explicit PhoneBrowserState(QObject* parent = nullptr);

    void setHistory(const QList<PhoneItem>& chain);
    const QList<PhoneItem>& history() const { return chain; }
    const QList<PhoneItem>& items() const { return listing.items; }
    const std::vector<Entry>& entries() const { return listing.entries; }
    const QList<PhoneItem>& baseItems() const { return base; }
    bool busy() const { return locked; }
    QString status() const { return statusText; }

    // Absent leaves the items in name order, for a window that sorts its listing itself.
    void setSortState(const std::optional<SortState>& sort);
    void setShowHidden(bool show);

    void reload();
    void go(const QList<PhoneItem>& chain);
    void back(); // the window's Up
    void openItem(const PhoneItem& item);
    void resolveAddress(const QString& text);
    void lock(const QString& message);
    void unlock(const QString& message);

    // "Android USB / Internal storage / DCIM", the heading.
    QString heading() const;
    QString title() const;
    QList<PhoneItem> chainTo(const PhoneItem& folder) const;

    QList<PhoneItem> itemsAt(const QList<int>& rows) const;
    bool canCopyFiles(const QList<PhoneItem>& selection) const;
    PhoneControls controls(const QList<PhoneItem>& selection, bool canPaste = false, bool canPin = false,
                           bool pinned = false) const;

    // Why "Send files…" can't take these names here, or absent when it can.
    std::optional<QString> sendRefusal(const QStringList& names) const;
    void runUpload(const QList<QByteArray>& paths, const PhoneItem& parent);
    void runDownload(const QList<PhoneItem>& items, const QByteArray& folder, Done done = {});

    // The phone has no undo and no Trash: each command refuses what might overwrite before it
    // sends anything, and stops at the first error.
    // Locks, sends `args` once, and reloads after a success.
    void mutate(const QStringList& args, const QString& message,
                std::function<void(const PhoneReply&)> replied = {});
    // Why `name` can't be given to `item` beside `siblings`, or absent when it can.
    static std::optional<QString> renameRefusal(const QList<PhoneItem>& siblings, const PhoneItem& item,
                                                const QString& name);
    void rename(const PhoneItem& item, const QString& name);
    // "New folder", or "New folder (2)", (3)… while the name is taken.
    static QString freeFolderName(const QList<PhoneItem>& siblings);
    // Makes a folder here; the listing after it announces it through `folderListed`.
    void createFolder();
    // Deletes one at a time; what was deleted before an error stays deleted.
    void deleteItems(const QList<PhoneItem>& items);
    // Moves on the phone itself into `target`; `parents` is the chain from the storage down to it.
    void moveItems(const QList<PhoneItem>& items, const PhoneItem& target, const QList<PhoneItem>& parents);
    static QString intoItselfText();
    static QString moveClashText();

    static QString countText(qsizetype count);

signals:
    void listingChanged();
    // A listing came from the phone for the place shown, or its failure.
    void listed(bool ok);
    void statusChanged(const QString& text);
    void busyChanged(bool busy);
    void navigateTo(const QList<PhoneItem>& chain);
    // A transfer holds the window; a fraction of 0 starts the next file.
    void transferStarted();
    void transferProgress(double fraction);
    void transferFinished();
    // The listing after a new folder holds it: it is to be selected and renamed.
    void folderListed(const QString& name);

private:
    void answered(const PhoneReply& reply);
    void deleteNext(QList<PhoneItem> items);
    void moveNext(QList<PhoneItem> items, const PhoneItem& target, qsizetype total);
    void relist();
    using Start = std::function<void(const std::shared_ptr<PhoneTransfer>& transfer, Done done)>;
    void transfer(const QString& message, const QString& success, bool reloadAfter, const Start& start,
                  Done done);

    QList<PhoneItem> chain;
    QList<PhoneItem> base;
    PhoneListing listing;
    std::optional<SortState> sort = SortState();
    bool showHidden = false;
    bool locked = false;
    bool reading = false;
    bool stale = false; // a listing was asked for while an operation held the tab
    quint64 generation = 0;
    QString statusText = QStringLiteral("Connecting…");
    std::optional<QString> pendingFolder;
};

} // namespace orvane
