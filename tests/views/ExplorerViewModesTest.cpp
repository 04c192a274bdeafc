#include "views/ExplorerViewModes.h"
#include "chrome/ExplorerMenus.h"
#include "core/FolderColors.h"
#include "core/InlineRename.h"
#include "core/Services.h"
#include "fileops/ExplorerFileOps.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"
#include "support/WindowDriver.h"
#include "support/WindowFixture.h"
#include "views/ExplorerColumns.h"
#include "views/ExplorerIconCanvas.h"
#include "views/ExplorerIconView.h"
#include "views/FileIcons.h"
#include "views/FileTable.h"
#include "window/AppDelegate.h"
#include "window/Explorer.h"

#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QSlider>
#include <QStyleOptionSlider>
#include <QWheelEvent>

using namespace orvane;
using namespace orvane::test;

namespace {
// A press as the system delivers it, with the physical key's scan code: announced, then pressed.
bool press(QWidget* target, int qtKey, quint32 scanCode, Qt::KeyboardModifiers modifiers = {}) {
    static ulong clock = 1;
    ++clock;
    QKeyEvent announce(QEvent::ShortcutOverride, qtKey, modifiers, scanCode, 0, 1);
    announce.setTimestamp(clock);
    announce.ignore();
    QSpontaneKeyEvent::setSpontaneous(&announce);
    const bool taken = qApp->notify(target, &announce) && announce.isAccepted();
    QKeyEvent down(QEvent::KeyPress, qtKey, modifiers, scanCode, 0, 1);
    down.setTimestamp(clock);
    QSpontaneKeyEvent::setSpontaneous(&down);
    qApp->notify(target, &down);
    return taken || down.isAccepted();
}

void wheel(QWidget* target, int delta, Qt::KeyboardModifiers modifiers) {
    const QPointF at(20, 20);
    QWheelEvent event(at, target->mapToGlobal(at), QPoint(), QPoint(0, delta), Qt::NoButton, modifiers,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(target, &event);
}
} // namespace

class ExplorerViewModesTest : public QObject, WindowFixture {
    Q_OBJECT
    ExplorerViewModes* modes = nullptr;
    QSlider* slider = nullptr;

    ExplorerIconCanvas* canvas() const { return modes->iconView()->canvas(); }

private slots:
    void init() {
        startProgram();
        for (const char* name : {"apple.txt", "banana.txt", "cherry.txt", "damson.txt"})
            tree->file(QLatin1String(name), "x");
        tree->folder("Folder");
        openWindow();
        QVERIFY(QTest::qWaitForWindowExposed(w));
        QTRY_COMPARE(w->entries().size(), size_t(5));
        modes = w->findChild<ExplorerViewModes*>();
        slider = w->findChild<QSlider*>(QStringLiteral("viewSizeSlider"));
        QVERIFY(modes && slider);
    }
    void cleanup() { stopProgram(); }

    // Pictures, sizes and folder colours reach the table from the process-wide services.
    void picturesSizesAndColoursReachTheTable() {
        QImage picture(64, 32, QImage::Format_RGB32);
        picture.fill(Qt::red);
        QVERIFY(picture.save(tree->path(QStringLiteral("photo.png"))));
        QTRY_COMPARE(w->entries().size(), size_t(6));
        const QAbstractItemModel* model = w->table()->model();
        const auto rowOf = [&](const QString& name) {
            for (int row = 0; row < model->rowCount(); ++row)
                if (model->index(row, 0).data().toString() == name) return row;
            return -1;
        };
        const int dimensions = explorerColumnIndex(QStringLiteral("dimensions"));
        const int photo = rowOf(QStringLiteral("photo.png"));
        QTRY_COMPARE(model->index(photo, dimensions).data().toString(), QStringLiteral("64 × 32"));
        QCOMPARE(model->index(photo, dimensions).data(Qt::ToolTipRole).toString(),
                 QStringLiteral("64 × 32 pixels"));
        QCOMPARE(model->index(rowOf(QStringLiteral("apple.txt")), dimensions).data().toString(),
                 QStringLiteral("—"));
        const qint64 typeIcon = FileIcons::shared().icon(w->entries()[size_t(photo)]).cacheKey();
        QTRY_VERIFY(model->index(photo, 0).data(Qt::DecorationRole).value<QIcon>().cacheKey() != typeIcon);
        const int folder = rowOf(QStringLiteral("Folder"));
        const qint64 plain = FileIcons::shared().folder().cacheKey();
        QCOMPARE(model->index(folder, 0).data(Qt::DecorationRole).value<QIcon>().cacheKey(), plain);
        w->services().folderColors().setAt(QStringLiteral("#EF6B73"), {tree->path(QStringLiteral("Folder"))});
        QVERIFY(model->index(folder, 0).data(Qt::DecorationRole).value<QIcon>().cacheKey() != plain);
    }

    void menuSliderAndModeStayInStep_data() {
        QTest::addColumn<int>("position");
        QTest::addColumn<int>("mode");
        QTest::addColumn<QString>("ticked");
        QTest::newRow("largest") << 9 << 1 << "Extra large icons";
        QTest::newRow("medium") << 5 << 3 << "Medium icons";
        QTest::newRow("list") << 1 << 5 << "List";
        QTest::newRow("details") << 0 << 6 << "Details";
    }
    void menuSliderAndModeStayInStep() {
        QFETCH(int, position);
        QFETCH(int, mode);
        QFETCH(QString, ticked);
        slider->setValue(position);
        QCOMPARE(modes->mode(), mode);
        QCOMPARE(w->table()->isVisible(), mode == 6);
        QCOMPARE(modes->iconView()->isVisible(), mode != 6);
        QMenu menu;
        ExplorerMenus::fillViewMenu(&menu, w);
        QStringList checked;
        for (QAction* action : menu.actions())
            if (action->isChecked() && action->property("command") == QStringLiteral("setViewMode"))
                checked << action->text();
        QCOMPARE(checked, QStringList{ticked});
        // And back from the menu to the slider.
        w->commands().run(QStringLiteral("setViewMode"), 7);
        QCOMPARE(slider->value(), 3);
    }

    // The track goes to the step clicked, and each end's icon to its end.
    void clicksOnTheTrackAndItsIcons_data() {
        QTest::addColumn<QString>("target"); // empty: the track
        QTest::addColumn<int>("step");
        QTest::newRow("track, far step") << "" << 7;
        QTest::newRow("track, first step") << "" << 0;
        QTest::newRow("Details icon") << "Details" << 0;
        QTest::newRow("largest icon") << "Largest icons" << 9;
    }
    void clicksOnTheTrackAndItsIcons() {
        QFETCH(QString, target);
        QFETCH(int, step);
        slider->setValue(step == 0 ? 5 : 1);
        QWidget* clicked = slider;
        QPoint at;
        if (target.isEmpty()) {
            QStyleOptionSlider option;
            option.initFrom(slider);
            const int handle = slider->style()->pixelMetric(QStyle::PM_SliderLength, &option, slider);
            at = QPoint(handle / 2 + QStyle::sliderPositionFromValue(0, 9, step, slider->width() - handle),
                        slider->height() / 2);
        } else {
            for (QLabel* label : slider->parentWidget()->findChildren<QLabel*>())
                if (label->accessibleName() == target) clicked = label;
            QVERIFY(clicked != slider);
            at = clicked->rect().center();
        }
        QTest::mouseClick(clicked, Qt::LeftButton, {}, at);
        QCOMPARE(slider->value(), step);
        QCOMPARE(modes->mode(), step == 0 ? 6 : 1);
    }

    void largestStepGivesTheLargestIcons() {
        slider->setValue(9);
        QCOMPARE(modes->extraLargeSize(), 320.0);
        QCOMPARE(canvas()->gridLayout().mode, 1);
        QCOMPARE(slider->toolTip(), QStringLiteral("Icons · 320 pt"));
        slider->setValue(8);
        QCOMPARE(canvas()->gridLayout().extraLargeSize, 256.0);
    }

    void keysAndWheelChooseModes() {
        w->table()->setFocus();
        QVERIFY(press(w->focusWidget(), Qt::Key_2, 11, Qt::ControlModifier | Qt::ShiftModifier));
        QCOMPARE(modes->mode(), 2);
        QVERIFY(canvas()->hasFocus());
        w->commands().run(QStringLiteral("setViewMode"), 6);
        wheel(w->table()->viewport(), 120, Qt::ControlModifier);
        QCOMPARE(modes->mode(), 3);
        wheel(canvas(), -120, Qt::ControlModifier);
        wheel(canvas(), -120, Qt::ControlModifier);
        QCOMPARE(modes->mode(), 4);
        // A plain wheel scrolls and leaves the mode alone.
        wheel(canvas(), 120, Qt::NoModifier);
        QCOMPARE(modes->mode(), 4);
        w->commands().run(QStringLiteral("setViewMode"), 0);
        QCOMPARE(modes->mode(), 4);
    }

    void modeBelongsToTheWindow() {
        w->commands().run(QStringLiteral("setViewMode"), 7);
        w->newTab();
        QCOMPARE(modes->mode(), 7);
        QVERIFY(modes->iconView()->isVisible());
        QTRY_COMPARE(canvas()->count(), 5);
        Explorer* other = app->newWindow(QUrl::fromLocalFile(tree->path()));
        QCOMPARE(other->findChild<ExplorerViewModes*>()->mode(), 6);
    }

    void canvasAndTableShareTheSelection() {
        selectNames(*w, {QStringLiteral("cherry.txt")});
        w->commands().run(QStringLiteral("setViewMode"), 3);
        const int cherry = selectedRows(*w->table()).value(0, -1);
        QVERIFY(canvas()->selectionState().isSelected(cherry));
        QTest::mouseClick(canvas(), Qt::LeftButton, {}, canvas()->itemRect(0).center());
        QCOMPARE(selectedRows(*w->table()), QList<int>{0});
        QCOMPARE(w->selected().size(), size_t(1));
        // Keys the canvas leaves go on to the window's table of keys: F2 renames in place over the icon.
        QVERIFY(press(canvas(), Qt::Key_F2, 68));
        QLineEdit* editor = w->inlineRename()->renameEditor();
        QVERIFY(editor);
        QCOMPARE(editor->parentWidget(), canvas());
        QCOMPARE(editor->geometry(), modes->iconView()->renamePlacement(0));
        QTest::keyClick(editor, Qt::Key_Escape);
        QVERIFY(!w->inlineRename()->renameEditor());
    }
};

ORVANE_TEST_MAIN(ExplorerViewModesTest)
#include "ExplorerViewModesTest.moc"
