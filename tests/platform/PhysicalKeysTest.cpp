#include "platform/PhysicalKeys.h"
#include "support/TestEnvironment.h"

#include <QKeyEvent>

using namespace orvane;

Q_DECLARE_METATYPE(orvane::PhysicalKey)

class PhysicalKeysTest : public QObject {
    Q_OBJECT

private slots:
    // Each row is one key as the system delivers it: the X11/Wayland scan code (kernel code + 8),
    // the Mac virtual key code, and what the active layout makes of it.
    void systemCodesName_data() {
        QTest::addColumn<quint32>("scanCode");
        QTest::addColumn<quint32>("virtualKey");
        QTest::addColumn<int>("qtKey");
        QTest::addColumn<QString>("text");
        QTest::addColumn<PhysicalKey>("expected");
        QTest::newRow("T under Arabic") << 28u << 17u << 0x0641 << QStringLiteral("ف") << PhysicalKey::T;
        QTest::newRow("C under Arabic") << 54u << 8u << 0x0624 << QStringLiteral("ؤ") << PhysicalKey::C;
        QTest::newRow("Z under German")
            << 52u << 6u << int(Qt::Key_Y) << QStringLiteral("y") << PhysicalKey::Z;
        QTest::newRow("A") << 38u << 0u << int(Qt::Key_A) << QStringLiteral("a") << PhysicalKey::A;
        QTest::newRow("N") << 57u << 45u << int(Qt::Key_N) << QStringLiteral("n") << PhysicalKey::N;
        QTest::newRow("1") << 10u << 18u << int(Qt::Key_1) << QStringLiteral("1") << PhysicalKey::Digit1;
        QTest::newRow("5") << 14u << 23u << int(Qt::Key_5) << QStringLiteral("5") << PhysicalKey::Digit5;
        QTest::newRow("6") << 15u << 22u << int(Qt::Key_6) << QStringLiteral("6") << PhysicalKey::Digit6;
        QTest::newRow("shifted 9") << 18u << 25u << int(Qt::Key_ParenLeft) << QStringLiteral("(")
                                   << PhysicalKey::Digit9;
        QTest::newRow("0") << 19u << 29u << int(Qt::Key_0) << QStringLiteral("0") << PhysicalKey::Digit0;
        QTest::newRow("Return") << 36u << 36u << int(Qt::Key_Return) << QStringLiteral("\r")
                                << PhysicalKey::Return;
        QTest::newRow("keypad Enter") << 104u << 76u << int(Qt::Key_Enter) << QString() << PhysicalKey::Enter;
        QTest::newRow("Backspace") << 22u << 51u << int(Qt::Key_Backspace) << QString()
                                   << PhysicalKey::Backspace;
        QTest::newRow("Delete") << 119u << 117u << int(Qt::Key_Delete) << QString()
                                << PhysicalKey::ForwardDelete;
        QTest::newRow("Insert") << 118u << 114u << int(Qt::Key_Insert) << QString() << PhysicalKey::Help;
        QTest::newRow("Escape") << 9u << 53u << int(Qt::Key_Escape) << QString() << PhysicalKey::Escape;
        QTest::newRow("Shift+Tab") << 23u << 48u << int(Qt::Key_Backtab) << QString() << PhysicalKey::Tab;
        QTest::newRow("Space") << 65u << 49u << int(Qt::Key_Space) << QStringLiteral(" ")
                               << PhysicalKey::Space;
        QTest::newRow("Home") << 110u << 115u << int(Qt::Key_Home) << QString() << PhysicalKey::Home;
        QTest::newRow("End") << 115u << 119u << int(Qt::Key_End) << QString() << PhysicalKey::End;
        QTest::newRow("F1") << 67u << 122u << int(Qt::Key_F1) << QString() << PhysicalKey::F1;
        QTest::newRow("F4") << 70u << 118u << int(Qt::Key_F4) << QString() << PhysicalKey::F4;
        QTest::newRow("F10") << 76u << 109u << int(Qt::Key_F10) << QString() << PhysicalKey::F10;
        QTest::newRow("Menu") << 135u << 110u << int(Qt::Key_Menu) << QString() << PhysicalKey::Menu;
        QTest::newRow("F11") << 95u << 103u << int(Qt::Key_F11) << QString() << PhysicalKey::F11;
        QTest::newRow("Left") << 113u << 123u << int(Qt::Key_Left) << QString() << PhysicalKey::Left;
        QTest::newRow("Up") << 111u << 126u << int(Qt::Key_Up) << QString() << PhysicalKey::Up;
        QTest::newRow("Down") << 116u << 125u << int(Qt::Key_Down) << QString() << PhysicalKey::Down;
        QTest::newRow("keypad plus") << 86u << 69u << int(Qt::Key_Plus) << QStringLiteral("+")
                                     << PhysicalKey::KeypadPlus;
    }
    void systemCodesName() {
        QFETCH(quint32, scanCode);
        QFETCH(quint32, virtualKey);
        QFETCH(int, qtKey);
        QFETCH(QString, text);
        QFETCH(PhysicalKey, expected);
        const QKeyEvent event(QEvent::KeyPress, qtKey, Qt::NoModifier, scanCode, virtualKey, 1, text);
        QCOMPARE(physicalKey(event), expected);
    }

    // Events the program makes itself carry no system codes; Qt's key decides then.
    void eventsWithoutCodesFallBackOnTheKey_data() {
        QTest::addColumn<int>("qtKey");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<PhysicalKey>("expected");
        QTest::newRow("T") << int(Qt::Key_T) << 0 << PhysicalKey::T;
        QTest::newRow("9") << int(Qt::Key_9) << 0 << PhysicalKey::Digit9;
        QTest::newRow("Backtab") << int(Qt::Key_Backtab) << int(Qt::ShiftModifier) << PhysicalKey::Tab;
        QTest::newRow("keypad plus") << int(Qt::Key_Plus) << int(Qt::KeypadModifier)
                                     << PhysicalKey::KeypadPlus;
        QTest::newRow("plus of the main block") << int(Qt::Key_Plus) << 0 << PhysicalKey::None;
        QTest::newRow("Help") << int(Qt::Key_Help) << 0 << PhysicalKey::Help;
        QTest::newRow("F12") << int(Qt::Key_F12) << 0 << PhysicalKey::F12;
        QTest::newRow("Arabic letter") << 0x0641 << 0 << PhysicalKey::None;
    }
    void eventsWithoutCodesFallBackOnTheKey() {
        QFETCH(int, qtKey);
        QFETCH(int, modifiers);
        QFETCH(PhysicalKey, expected);
        const QKeyEvent event(QEvent::KeyPress, qtKey, Qt::KeyboardModifiers(modifiers));
        QCOMPARE(physicalKey(event), expected);
        QCOMPARE(physicalKeyFromQtKey(qtKey, Qt::KeyboardModifiers(modifiers)), expected);
    }

    void modifiersNameThePrintedKeys() {
#ifdef Q_OS_MACOS
        const Qt::KeyboardModifiers command = Qt::ControlModifier, control = Qt::MetaModifier;
#else
        const Qt::KeyboardModifiers command = Qt::MetaModifier, control = Qt::ControlModifier;
#endif
        const KeyModifiers c = keyModifiers(control | Qt::ShiftModifier);
        QVERIFY(c.control && !c.command && c.shift && !c.alt && c.primary());
        const KeyModifiers k = keyModifiers(command | Qt::AltModifier);
        QVERIFY(!k.control && k.command && k.alt);
#ifdef Q_OS_MACOS
        QVERIFY(k.primary());
#else
        QVERIFY(!k.primary()); // the Super key belongs to the desktop
#endif
    }
};

ORVANE_TEST_MAIN(PhysicalKeysTest)
#include "PhysicalKeysTest.moc"
