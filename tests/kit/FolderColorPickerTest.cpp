#include "kit/FolderColorPicker.h"
#include "support/TestEnvironment.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

using namespace orvane;

namespace {

QPushButton* button(QWidget& window, const QString& text) {
    for (auto* candidate : window.findChildren<QPushButton*>())
        if (candidate->text() == text || candidate->toolTip() == text) return candidate;
    return nullptr;
}

} // namespace

class FolderColorPickerTest : public QObject {
    Q_OBJECT
private slots:
    void choices_data();
    void choices();
    void badTextDisablesOk();
};

void FolderColorPickerTest::choices_data() {
    QTest::addColumn<QString>("initial");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("pressed");
    QTest::addColumn<QString>("result"); // empty: no colour
    QTest::newRow("kept") << QStringLiteral("#58c9cf") << QString() << QString() << QStringLiteral("#58C9CF");
    QTest::newRow("typed") << QString() << QStringLiteral(" aa8ce8 ") << QString()
                           << QStringLiteral("#AA8CE8");
    QTest::newRow("preset") << QString() << QString() << QStringLiteral("Color #EF6B73")
                            << QStringLiteral("#EF6B73");
    QTest::newRow("default removes") << QStringLiteral("#EF6B73") << QString() << QStringLiteral("Default")
                                     << QString();
    QTest::newRow("none at start") << QString() << QString() << QString() << QString();
}

void FolderColorPickerTest::choices() {
    QFETCH(QString, initial);
    QFETCH(QString, typed);
    QFETCH(QString, pressed);
    QFETCH(QString, result);
    FolderColorPicker picker(initial.isEmpty() ? std::nullopt : std::optional<QString>(initial));
    QCOMPARE(picker.windowTitle(), QStringLiteral("Folder Color"));
    QCOMPARE(picker.hexField()->accessibleName(), QStringLiteral("Hex color"));
    QTimer::singleShot(0, &picker, [&] {
        if (!typed.isEmpty()) {
            picker.hexField()->clear();
            QTest::keyClicks(picker.hexField(), typed);
        }
        if (!pressed.isEmpty()) button(picker, pressed)->click();
        picker.okButton()->click();
    });
    QVERIFY(picker.pick());
    QCOMPARE(picker.selectedHex().value_or(QString()), result);
}

void FolderColorPickerTest::badTextDisablesOk() {
    FolderColorPicker picker(QStringLiteral("#58C9CF"));
    picker.hexField()->clear();
    QTest::keyClicks(picker.hexField(), QStringLiteral("12345"));
    QVERIFY(!picker.okButton()->isEnabled());
    QCOMPARE(picker.errorText(), QStringLiteral("Use 6 Hex digits: #RRGGBB"));
    QCOMPARE(picker.hexField()->text(), QStringLiteral("12345"));
    QTest::keyClicks(picker.hexField(), QStringLiteral("6"));
    QVERIFY(picker.okButton()->isEnabled());
    QVERIFY(picker.errorText().isEmpty());
}

ORVANE_TEST_MAIN(FolderColorPickerTest)
#include "FolderColorPickerTest.moc"
