#pragma once

#include "phone/PhoneReply.h"

#include <QElapsedTimer>
#include <QHash>
#include <QObject>
#include <functional>
#include <memory>

namespace orvane {

// A search of the phone, which has no index: a depth-first walk through the bridge, one listing at
// a time on the main thread, testing names as they come. Every match remembers the chain of the
// folder it was found in, since a phone item has no path. A run ends in silence when it has been
// cancelled; a reply that comes back after that is dropped.
class PhoneSearch : public QObject {
    Q_OBJECT
public:
    using Reply = std::function<void(const PhoneReply& reply)>;
    // Lists [storage, id], or the storages for []; `done` runs on the main thread.
    using Read = std::function<void(const QStringList& args, Reply done)>;
    // Text key of a found item -> the chain of the folder that holds it.
    using Parents = QHash<QString, QList<PhoneItem>>;
    using Completion =
        std::function<void(const QList<PhoneItem>& results, const Parents& parents, const QString& summary)>;
    using Progress = std::function<void(int folders, int matches)>;
    // The matches found since the last batch, while the walk goes on.
    using Batch = std::function<void(const QList<PhoneItem>& found, const Parents& parents)>;

    static constexpr int debounceMs = 300;
    static constexpr int batchIntervalMs = 250;

    explicit PhoneSearch(QObject* parent = nullptr);
    ~PhoneSearch() override;

    // Scope 0 filters `base` and completes at once; 1 walks from `history`; 2 walks every storage.
    void start(const QString& text, int scope, const QList<PhoneItem>& history, const QList<PhoneItem>& base,
               bool hidden, Completion completion);
    void cancel();
    bool running() const { return current != nullptr; }

    static bool visible(const PhoneItem& item, bool hidden);
    static QString scopeLabel(int scope);

    Read read; // PhoneBridge::run by default
    Progress progress;
    Batch batch;

private:
    struct Run;
    void next(const std::shared_ptr<Run>& run);
    void receive(const std::shared_ptr<Run>& run, const QList<PhoneItem>& chain, const PhoneReply& reply);
    void offerBatch(Run& run);

    quint64 generation = 0;
    std::shared_ptr<Run> current;
};

} // namespace orvane
