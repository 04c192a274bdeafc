#pragma once

#include <QList>
#include <QSet>
#include <QString>
#include <atomic>
#include <functional>
#include <vector>

struct archive;

namespace orvane {

// Unpacks an archive (zip, tar and its compressed kinds, 7z) beside it through libarchive. Everything
// is written below a hidden staging folder, each path resolved by the kernel beneath it, so no entry
// reaches outside; only a whole result gets its name, and a failure or cancel leaves nothing.
class Extraction {
public:
    struct Outcome {
        QString result; // the new folder, or the one item when the archive holds one
        QString error;
        bool cancelled = false;
    };

    // Blocks: call it off the main thread. `into` is the folder the result lands in.
    Outcome run(const QString& archive, const QString& into);
    void cancel() { stopped = true; }
    // Called on the working thread with the share of the archive read, 0 to 1.
    std::function<void(double)> progress;
    // How many bytes may be written; below zero, the free space of the target less a reserve.
    qint64 spaceLimit = -1;

    static bool handles(const QString& name);
    // The archive's name without its archive extensions: "a.tar.gz" gives "a".
    static QString stem(const QString& name);
    // "name", then "name (2)" with a file's extension kept behind the number.
    static QString numbered(const QString& name, int n, bool folder);
    static constexpr const char* stagingPrefix = ".Orvane-Extract-";
    static QString errorTitle() { return QStringLiteral("Cannot extract archive"); }

private:
    struct Folder {
        QByteArray path;
        int mode;
        qint64 mtime;
        long mtimeNsec;
    };
    QString unpack(struct archive* a, qint64 size);
    QString writeEntry(struct archive* a, void* entry, const QByteArray& path);
    QString writeFile(struct archive* a, int parent, const QByteArray& name, int mode);
    QString writeLink(int parent, const QByteArray& name, const QList<QByteArray>& parts, const char* target);
    QString writeHardLink(int parent, const QByteArray& name, const QByteArray& original);
    int openParent(const QByteArray& path, QByteArray& name, QString& error);
    QString checkLinks() const;
    QString place(const QString& staged, const QString& into, const QString& archiveName, QString& error);

    int root = -1;
    qint64 written = 0;
    qint64 budget = 0;
    QSet<QByteArray> topLevel;
    std::vector<Folder> folders;
    std::vector<QByteArray> links;
    std::atomic<bool> stopped{false};
};

} // namespace orvane
