#include "platform/DefaultApplications.h"
#include "support/TestEnvironment.h"

#include <QDir>
#include <QFile>

using namespace orvane;

namespace {
void write(const QString& path, const QByteArray& text) {
    QDir().mkpath(QFileInfo(path).path());
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write(text);
}
} // namespace

class DefaultApplicationsTest : public QObject {
    Q_OBJECT

private slots:
    // The person's own choice in mimeapps.list wins over whatever the system installs.
    void theDesktopsChoiceIsNamed() {
        const QString data = qEnvironmentVariable("XDG_DATA_HOME");
        const QString config = qEnvironmentVariable("XDG_CONFIG_HOME");
        write(data + "/applications/orvane-test-viewer.desktop",
              "[Desktop Entry]\nType=Application\nName=Orvane Test Viewer\nExec=/bin/true %f\n"
              "MimeType=text/plain;\n");
        write(config + "/mimeapps.list", "[Default Applications]\ntext/plain=orvane-test-viewer.desktop\n");
        QCOMPARE(DefaultApplications::nameFor("/tmp/a.txt", "text/plain"), QString("Orvane Test Viewer"));
        QCOMPARE(DefaultApplications::nameFor("/tmp/a.x", "application/x-orvane-nothing-opens-this"),
                 QString());
        QCOMPARE(DefaultApplications::nameFor("/tmp/a", QString()), QString());
    }
};

ORVANE_TEST_MAIN(DefaultApplicationsTest)
#include "DefaultApplicationsTest.moc"
