#include "kit/ExplorerAlert.h"

#include "fileops/ExplorerFileOps.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"
#include "support/WindowDriver.h"
#include "support/WindowFixture.h"
#include "window/AppDelegate.h"
#include "window/Explorer.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

using namespace orvane;
using namespace orvane::test;

namespace {

// What a dialog looked like while it was up.
struct Seen {
    bool ours = false;
    bool frameless = false;
    bool styled = false;
    bool systemIcon = true;
    bool hasSymbol = false;
    QPoint offCentre;
    QString defaultButton;
};

Seen look(QMessageBox* box, const QWidget* window) {
    Seen seen;
    seen.ours = qobject_cast<ExplorerAlert*>(box) != nullptr;
    seen.frameless = box->windowFlags().testFlag(Qt::FramelessWindowHint);
    seen.styled = box->objectName() == QLatin1String("auxiliaryWindow") && !box->styleSheet().isEmpty();
    seen.systemIcon = box->icon() != QMessageBox::NoIcon;
    seen.hasSymbol = !box->iconPixmap().isNull();
    seen.offCentre = box->frameGeometry().center() - window->frameGeometry().center();
    seen.defaultButton = box->defaultButton() ? box->defaultButton()->text() : QString();
    return seen;
}

// Looks at the next modal dialog, then answers it with "Cancel".
void inspectNextDialog(Seen& seen, const QWidget* window) {
    QTimer::singleShot(0, [&seen, window] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box) return;
        seen = look(box, window);
        for (QAbstractButton* b : box->buttons())
            if (b->text() == QLatin1String("Cancel")) b->click();
    });
}

} // namespace

class ExplorerAlertTest : public QObject, WindowFixture {
    Q_OBJECT

private slots:
    void init() {
        startProgram();
        tree->file("hello.txt", "hello");
        openWindow();
        w->resize(900, 600);
        w->move(100, 80);
        w->show();
        QVERIFY(QTest::qWaitForWindowExposed(w));
    }
    void cleanup() { stopProgram(); }

    // Confirmations and errors are the program's own dark, frameless boxes over their window, with
    // its symbol rather than the system's question mark; Return never deletes anything.
    void dialogsTakeTheWindowsLook_data() {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("defaultButton");
        QTest::newRow("trash") << "trashAction"
                               << "Move to Trash";
        QTest::newRow("delete") << "permanentlyDeleteAction"
                                << "Cancel";
        QTest::newRow("error") << ""
                               << "OK";
    }
    void dialogsTakeTheWindowsLook() {
        QFETCH(QString, command);
        QFETCH(QString, defaultButton);
        Seen seen;
        if (command.isEmpty()) {
            w->showError(QStringLiteral("Cannot rename"),
                         QStringLiteral("An item with that name already exists."));
            QTRY_VERIFY(w->lastAlert() && w->lastAlert()->isVisible());
            seen = look(w->lastAlert(), w);
            QCOMPARE(takeAlert(*w), QStringLiteral("Cannot rename|An item with that name already exists."));
        } else {
            selectNames(*w, {"hello.txt"});
            inspectNextDialog(seen, w);
            QVERIFY(w->commands().run(command));
            QVERIFY(QFile::exists(tree->path("hello.txt")));
        }
        QVERIFY(seen.ours);
        QVERIFY(seen.frameless);
        QVERIFY(seen.styled);
        QVERIFY(!seen.systemIcon);
        QVERIFY(seen.hasSymbol);
        QVERIFY2(seen.offCentre.manhattanLength() <= 4,
                 qPrintable(QStringLiteral("%1,%2").arg(seen.offCentre.x()).arg(seen.offCentre.y())));
        QCOMPARE(seen.defaultButton, defaultButton);
    }
};

ORVANE_TEST_MAIN(ExplorerAlertTest)
#include "ExplorerAlertTest.moc"
