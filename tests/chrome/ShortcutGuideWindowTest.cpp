#include "chrome/ShortcutGuideWindow.h"
#include "chrome/ExplorerChrome.h"

#include "support/AccessibleTree.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"
#include "support/WindowDriver.h"
#include "support/WindowFixture.h"
#include "window/AppDelegate.h"
#include "window/Explorer.h"
#include "window/ExplorerShortcuts.h"

#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>
#include <QScrollBar>

using namespace orvane;
using namespace orvane::test;

namespace {

// Whether a label shows all of its text: on one line, or wrapped into the height it was given.
bool showsAll(const QLabel* label) {
    const int room = label->contentsRect().width();
    if (label->wordWrap()) return label->height() >= label->heightForWidth(label->width());
    return label->fontMetrics().horizontalAdvance(label->text()) <= room;
}

int countOf(const ShortcutGuideWindow* guide, const QString& text) {
    int n = 0;
    for (const QLabel* label : guide->findChildren<QLabel*>())
        n += label->text() == text;
    return n;
}

} // namespace

class ShortcutGuideWindowTest : public QObject, WindowFixture {
    Q_OBJECT

    QPointer<ShortcutGuideWindow> openGuide() {
        w->commands().run(QStringLiteral("helpAction"));
        QPointer<ShortcutGuideWindow> guide = (*w->findChild<ExplorerChrome*>()).shortcutGuide();
        if (guide) (void)QTest::qWaitForWindowExposed(guide);
        return guide;
    }

private slots:
    void init() {
        startProgram();
        openWindow();
        // Inside the offscreen screen (800 by 600), so the guide can sit in the middle of the window.
        w->setGeometry(10, 5, 780, 590);
        QVERIFY(QTest::qWaitForWindowExposed(w));
    }
    void cleanup() { stopProgram(); }

    // At its default size every line reads whole, without a sideways scroll bar, and the guide
    // stands over the middle of its window.
    void readableAndCentredAtItsDefaultSize() {
        QPointer<ShortcutGuideWindow> guide = openGuide();
        QVERIFY(guide);
        QCOMPARE(guide->size(), QSize(650, 600));
        QVERIFY(guide->windowFlags().testFlag(Qt::FramelessWindowHint));
        const QPoint offCentre = guide->frameGeometry().center() - w->frameGeometry().center();
        QVERIFY2(offCentre.manhattanLength() <= 4, qPrintable(QString::number(offCentre.manhattanLength())));
        QScrollArea* scroll = guide->scrollArea();
        QVERIFY(!scroll->horizontalScrollBar()->isVisible());
        QVERIFY(scroll->widget()->width() <= scroll->viewport()->width());
        for (const QLabel* label : scroll->widget()->findChildren<QLabel*>()) {
            QVERIFY2(showsAll(label), qPrintable(label->text()));
            QVERIFY2(label->geometry().right() < scroll->viewport()->width(), qPrintable(label->text()));
        }
        QCOMPARE(accessibilityFaults(guide), QStringList());
    }

    // A row whose command is missing says so; in a whole window none is missing.
    void absentCommandsAreMarked() {
        const auto available = [this](const QString& name) {
            return name != QLatin1String("makeAlias") && w->commands().contains(name);
        };
        int absent = 0;
        for (const ShortcutRow& row : explorerShortcutRows())
            absent += !row.command.isEmpty() && !available(row.command);
        QVERIFY(absent > 0);
        QPointer<ShortcutGuideWindow> guide = new ShortcutGuideWindow(w, available);
        guide->show();
        QCOMPARE(countOf(guide, ShortcutGuideWindow::unavailableText()), absent);
        const auto isAlias = [](const QLabel* l) { return l->text() == "Create a symbolic link"; };
        const QList<QLabel*> labels = guide->findChildren<QLabel*>();
        const auto alias = std::find_if(labels.begin(), labels.end(), isAlias);
        QVERIFY(alias != labels.end());
        QVERIFY((*alias)->accessibleName().endsWith(QLatin1String("not available yet")));
        guide->close();
        QTRY_VERIFY(!guide);

        guide = openGuide();
        QCOMPARE(countOf(guide, ShortcutGuideWindow::unavailableText()), 0);
    }

    // What only a Mac has is said in this desktop's words, or left out.
    void noMacWordsHere_data() {
        QTest::addColumn<QString>("macWords");
        QTest::addColumn<QString>("ours");
        QTest::newRow("full disk access") << "Full Disk Access"
                                          << "";
        QTest::newRow("option key") << "On Mac:"
                                    << "F-keys may require Fn. Shortcuts act inside Orvane.";
        QTest::newRow("alias") << "macOS alias"
                               << "Create a symbolic link";
        QTest::newRow("quick look") << "Quick Look"
                                    << "Quick Preview (unless choosing individual items)";
    }
    void noMacWordsHere() {
        QFETCH(QString, macWords);
        QFETCH(QString, ours);
        QStringList texts;
        for (const QLabel* label : openGuide()->findChildren<QLabel*>())
            texts << label->text();
        for (const QAction* action : w->findChildren<QAction*>())
            texts << action->text();
        QCOMPARE(texts.filter(macWords), QStringList());
        if (!ours.isEmpty()) QVERIFY(texts.contains(ours));
    }
};

ORVANE_TEST_MAIN(ShortcutGuideWindowTest)
#include "ShortcutGuideWindowTest.moc"
