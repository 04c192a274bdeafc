#include "batteries/SelfTest.h"
#include "kit/Palette.h"
#include "system/DefaultBrowserSettings.h"
#include "system/DesktopIntegration.h"
#include "system/ExternalOpenRequests.h"
#include "system/InstanceChannel.h"
#include "window/AppDelegate.h"

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
    const QList<QUrl> urls = orvane::ExternalOpenRequests::fromArguments(argc, argv);
    if (!urls.isEmpty() && orvane::InstanceChannel::forward(urls)) return 0; // a running Orvane shows them
    orvane::AppDelegate delegate;
    delegate.openFirstWindow = !args.contains(QStringLiteral("--gapplication-service"));
    auto* channel = new orvane::InstanceChannel(delegate);
    auto* desktop = new orvane::DesktopIntegration(delegate, channel);
    delegate.defaultBrowserChanging = [desktop] { return desktop->defaults().isChanging(); };
    delegate.showDefaultBrowserSettings = [desktop] { desktop->presentSettingsWindow(); };
    if (!urls.isEmpty()) delegate.receiveExternalURLs(urls);
    delegate.applicationDidFinishLaunching();
    return app.exec();
}
