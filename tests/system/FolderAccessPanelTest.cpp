#include "system/FolderAccessPanel.h"
#include "core/TabContent.h"
#include "core/WindowCommands.h"
#include "platform/NativePath.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"
#include "support/WindowFixture.h"
#include "window/AppDelegate.h"
#include "window/Explorer.h"

#include <QLabel>
#include <QPushButton>
#include <sys/stat.h>
#include <unistd.h>

using namespace orvane;
using namespace orvane::test;

// Permissions are real: the window reads as an ordinary user (`nobody`) while the folder is refused.
class FolderAccessPanelTest : public QObject, WindowFixture {
    Q_OBJECT

    FolderAccessPanel* access() const { return w->findChild<FolderAccessPanel*>(); }

    // Reads the folder shown again as `nobody`, and waits until it has been read.
    void refreshAsNobody() {
        QVERIFY(::seteuid(65534) == 0);
        w->refresh();
        QTRY_VERIFY(!w->contentFor(w->current())->reading());
        QVERIFY(::seteuid(0) == 0);
    }
    QPushButton* button(const QString& text) const {
        for (QPushButton* b : access()->panel()->findChildren<QPushButton*>())
            if (b->text() == text) return b;
        return nullptr;
    }

private slots:
    void initTestCase() {
        if (::getuid() != 0) QSKIP("needs to read as another user");
    }
    void init() {
        startProgram();
        ::chmod(NativePath::encode(tree->path()).constData(), 0755);
        tree->file(QStringLiteral("locked/inside.txt"));
        openWindow(tree->path(QStringLiteral("locked")));
    }
    void cleanup() {
        ::chmod(NativePath::encode(tree->path(QStringLiteral("locked"))).constData(), 0755);
        stopProgram();
    }

    // Only a refusal for want of rights brings the panel; any other failure keeps the window's own words.
    void thePanelIsForRefusalsOnly_data() {
        QTest::addColumn<int>("mode"); // -1: the folder goes away while shown
        QTest::addColumn<bool>("blocked");
        QTest::addColumn<QString>("label");
        QTest::newRow("entered but not read") << 0311 << true << "";
        QTest::newRow("no rights at all") << 0 << true << "";
        QTest::newRow("read but not entered") << 0644 << false << "";
        QTest::newRow("readable") << 0755 << false << "";
        QTest::newRow("gone") << -1 << false << "Cannot read this folder";
    }

    void thePanelIsForRefusalsOnly() {
        QFETCH(int, mode);
        QFETCH(bool, blocked);
        QFETCH(QString, label);
        const QString folder = tree->path(QStringLiteral("locked"));
        if (mode < 0)
            QVERIFY(::system(qPrintable(QStringLiteral("rm -r '%1'").arg(folder))) == 0);
        else
            ::chmod(NativePath::encode(folder).constData(), mode_t(mode));
        refreshAsNobody();
        QCOMPARE(!access()->panel()->isHidden(), blocked);
        QCOMPARE(access()->blockedFolder(), blocked ? folder : QString());
        if (blocked) {
            QVERIFY(w->widgets().emptyLabel->isHidden());
            QCOMPARE(access()->panel()->findChildren<QLabel*>().front()->text(),
                     QStringLiteral("Access to locked is blocked"));
        }
        if (!label.isEmpty()) QCOMPARE(w->widgets().emptyLabel->text(), label);
    }

    // Its ways out: trying again once the rights are there, and going up to where one may look.
    void theWaysOut() {
        const QString folder = tree->path(QStringLiteral("locked"));
        ::chmod(NativePath::encode(folder).constData(), 0);
        refreshAsNobody();
        QVERIFY(!access()->panel()->isHidden());
        ::chmod(NativePath::encode(folder).constData(), 0755);
        button(QStringLiteral("Try again"))->click();
        QTRY_VERIFY(access()->panel()->isHidden());
        QCOMPARE(w->entries().size(), size_t(1));
        ::chmod(NativePath::encode(folder).constData(), 0);
        refreshAsNobody();
        button(QStringLiteral("Go up"))->click();
        QTRY_COMPARE(w->current(), QUrl::fromLocalFile(tree->path()));
        QVERIFY(access()->panel()->isHidden());
        QVERIFY(button(QStringLiteral("Properties")));
    }
};

ORVANE_TEST_MAIN(FolderAccessPanelTest)
#include "FolderAccessPanelTest.moc"
