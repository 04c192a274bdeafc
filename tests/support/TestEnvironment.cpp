#include "TestEnvironment.h"

#include "fileops/FileTree.h"

#include <QDir>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <cstdlib>

namespace orvane::test {

namespace {
// Removed by the exact bytes at exit, since the Trash in it may hold names that are not UTF-8.
struct Root {
    QTemporaryDir dir{QDir::tempPath() + QStringLiteral("/orvane-test-XXXXXX")};
    ~Root() {
        QString ignored;
        FileTree::remove(dir.path(), ignored);
    }
};
} // namespace

void prepareEnvironment() {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    // Lives for the whole process; removed at exit by its destructor.
    static Root root;
    const QString base = root.dir.path();
    const struct {
        const char* name;
        const char* sub;
    } folders[] = {{"HOME", "home"},
                   {"XDG_CONFIG_HOME", "home/.config"},
                   {"XDG_DATA_HOME", "home/.local/share"},
                   {"XDG_CACHE_HOME", "home/.cache"},
                   {"XDG_RUNTIME_DIR", "runtime"}};
    for (const auto& f : folders) {
        const QString path = base + u'/' + QLatin1String(f.sub);
        QDir().mkpath(path);
        qputenv(f.name, QFile::encodeName(path));
    }
    QFile::setPermissions(base + QStringLiteral("/runtime"),
                          QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
}

} // namespace orvane::test
