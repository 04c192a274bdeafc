#include "TestEnvironment.h"

#include <QDir>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <cstdlib>

namespace orvane::test {

void prepareEnvironment() {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    // Lives for the whole process; removed at exit by its destructor.
    static QTemporaryDir root(QDir::tempPath() + QStringLiteral("/orvane-test-XXXXXX"));
    const QString base = root.path();
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
