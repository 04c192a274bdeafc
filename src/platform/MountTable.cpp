#include "platform/MountTable.h"

#include "platform/NativePath.h"

#include <QList>

namespace orvane {

QByteArray MountTable::unescape(const QByteArray& field) {
    QByteArray out;
    out.reserve(field.size());
    for (qsizetype i = 0; i < field.size(); ++i) {
        const auto octal = [&](qsizetype at) {
            return at < field.size() && field[at] >= '0' && field[at] <= '7';
        };
        if (field[i] == '\\' && octal(i + 1) && octal(i + 2) && octal(i + 3)) {
            out.append(
                char(((field[i + 1] - '0') << 6) | ((field[i + 2] - '0') << 3) | (field[i + 3] - '0')));
            i += 3;
        } else {
            out.append(field[i]);
        }
    }
    return out;
}

// id parent major:minor root mount-point options [optional fields...] - type source super-options
std::vector<MountPoint> MountTable::parse(const QByteArray& mountinfo) {
    std::vector<MountPoint> mounts;
    for (const QByteArray& line : mountinfo.split('\n')) {
        const QList<QByteArray> f = line.split(' ');
        const qsizetype dash = f.indexOf("-");
        if (dash < 6 || f.size() < dash + 3 || !f[2].contains(':') || !f[4].startsWith('/')) continue;
        MountPoint m;
        m.path = NativePath::decode(unescape(f[4]));
        m.device = QString::fromLatin1(f[2]);
        m.options = QString::fromLatin1(f[5]);
        m.type = QString::fromUtf8(unescape(f[dash + 1]));
        m.source = NativePath::decode(unescape(f[dash + 2]));
        mounts.push_back(m);
    }
    return mounts;
}

} // namespace orvane
