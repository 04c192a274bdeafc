#include "batteries/SelfTest.h"
#include "browsing/AppDelegate.h"
#include "browsing/Palette.h"
#include "system/ExternalOpenRequests.h"

#include <QApplication>

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Orvane"));
    QApplication::setApplicationName(QStringLiteral("Orvane"));
    QApplication::setApplicationVersion(QStringLiteral("0.1"));
    orvane::Palette::apply(app);
    const QStringList args = QApplication::arguments();
    if (args.contains(QStringLiteral("--self-test"))) return orvane::SelfTest().run();
    if (args.contains(QStringLiteral("--phone-parity-test"))) return orvane::runPhoneParityTest();
    orvane::AppDelegate delegate;
    if (const QList<QUrl> urls = orvane::ExternalOpenRequests::fromArguments(argc, argv); !urls.isEmpty())
        delegate.receiveExternalURLs(urls);
    delegate.applicationDidFinishLaunching();
    return app.exec();
}
