#pragma once

#include <QByteArray>
#include <QHash>
#include <QImage>
#include <QString>
#include <QStringList>
#include <vector>

namespace orvane {

// The desktop's own thumbnailers: the *.thumbnailer entries under share/thumbnailers of the XDG data
// folders (ffmpegthumbnailer for video, a PDF one where present), run as child processes.
class DesktopThumbnailers {
public:
    static constexpr int timeoutMs = 10000;

    // Reads the entries of `dataFolders`, or of the XDG data folders when empty.
    explicit DesktopThumbnailers(const QStringList& dataFolders = {});

    // The command line of the entry for a type, or empty.
    QString command(const QString& mime) const;
    bool handles(const QString& mime) const { return !command(mime).isEmpty(); }
    // The picture the entry makes of `path` at most `side` pixels across; null when it fails, hangs
    // past the time limit (the process group is killed) or writes no picture.
    QImage make(const QString& path, const QString& mime, int side) const;

    // `command` with %i, %u, %o, %s and %% filled in; the path stays its exact bytes.
    static std::vector<QByteArray> arguments(const QString& command, const QString& path,
                                             const QByteArray& output, int side);
    // Runs `argv` as a process group of its own; false when it failed or had to be killed.
    static bool run(const std::vector<QByteArray>& argv, int limitMs);

private:
    void readFolder(const QString& folder);
    void readEntry(const QString& file);

    QHash<QString, QString> commands; // by MIME type; the first folder wins
};

} // namespace orvane
