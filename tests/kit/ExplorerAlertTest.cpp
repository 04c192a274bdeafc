#include "kit/ExplorerAlert.h"

#include "fileops/ExplorerFileOps.h"
#include "kit/AuxiliaryStyle.h"
#include "support/AccessibleTree.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"
#include "support/WindowDriver.h"
#include "support/WindowFixture.h"
#include "window/AppDelegate.h"
#include "window/Explorer.h"

#include <QInputDialog>
#include <QLineEdit>
#include <QProxyStyle>
#include <QPushButton>
#include <QStyleFactory>
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
    QStringList accessibilityFaults;
    bool stockIcons = false;
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
    seen.accessibilityFaults = accessibilityFaults(box);
    for (const QAbstractButton* b : box->buttons())
        seen.stockIcons |= !b->icon().isNull();
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

// A desktop whose theme puts its stock icons on dialog buttons, as GNOME's and KDE's do.
class StockIconStyle : public QProxyStyle {
public:
    StockIconStyle() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* answer) const override {
        if (hint == SH_DialogButtonBox_ButtonsHaveIcons) return 1;
        return QProxyStyle::styleHint(hint, option, widget, answer);
    }
};

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
        QCOMPARE(seen.accessibilityFaults, QStringList());
        QVERIFY(!seen.stockIcons);
    }

    // The desktop theme's icons belong to other programs; our dialogs' buttons are words alone.
    void noStockIconsOnDialogButtons() {
        QApplication::setStyle(new StockIconStyle);
        ExplorerAlert alert(ExplorerAlert::Kind::Error, QStringLiteral("Cannot rename"), QString(), w);
        alert.addButton(QMessageBox::Cancel);
        QInputDialog ask(w);
        AuxiliaryStyle::apply(&ask);
        ask.setTextValue(QStringLiteral("name"));
        ask.show();
        QList<QAbstractButton*> buttons = alert.buttons();
        buttons += ask.findChildren<QAbstractButton*>();
        QCOMPARE(buttons.size(), 4);
        for (const QAbstractButton* button : buttons)
            QVERIFY2(button->icon().isNull(), qPrintable(button->text()));
        QApplication::setStyle(QStringLiteral("Fusion"));
    }
};

ORVANE_TEST_MAIN(ExplorerAlertTest)
#include "ExplorerAlertTest.moc"
