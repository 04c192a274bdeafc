#pragma once

#include "kit/EditablePathBox.h"
#include "phone/AndroidBrowser.h"
#include "phone/AndroidContent.h"
#include "phone/BridgeHarness.h"
#include "phone/PhoneBrowserState.h"
#include "support/TempTree.h"
#include "support/WindowFixture.h"
#include "window/AppDelegate.h"
#include "window/Explorer.h"

#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <memory>

namespace orvane::test {

// A real window over the real bridge and a phone simulated in a temporary folder. The test makes
// the phone's items, then opens the window on the local folder "here" of `tree`.
class PhoneWindowFixture : public QObject, protected WindowFixture {
protected:
    std::unique_ptr<TempTree> phone;

    void makeTrees() {
        startProgram();
        phone = std::make_unique<TempTree>();
    }
    void openWindow() {
        simulate(phone->path());
        WindowFixture::openWindow(tree->folder(QStringLiteral("here")));
    }
    void closeWindow() {
        stopProgram();
        phone.reset();
    }

    QStringList names() const {
        QStringList shown;
        for (const Entry& e : w->entries())
            shown << e.name();
        return shown;
    }
    QString status() const { return w->widgets().status->text(); }
    AndroidBrowser* browser() const { return w->findChild<AndroidContent*>()->active(); }
    // The phone tab has its answer.
    bool settled() const { return browser() && !browser()->state().busy(); }
    // Goes to a place the way a person would: the address field and Return.
    void type(const QString& address) {
        w->widgets().pathBox->addressField()->setText(address);
        w->addressGo();
        QTRY_VERIFY(settled());
    }
};

} // namespace orvane::test
