#pragma once

#include <QObject>
#include <Qt>
#include <optional>

class QKeyEvent;

namespace orvane {

class Explorer;

// The key-down watch of one window. It sees every key pressed anywhere in the window before the
// focused widget and before menu shortcuts do, so the window's commands win over both; the file
// table hands the presses it receives to `offerTableKey`.
class ExplorerKeyMonitor : public QObject {
    Q_OBJECT
public:
    explicit ExplorerKeyMonitor(Explorer& window);
    ~ExplorerKeyMonitor() override;

    // The file table's key hook: true when the window used the key.
    bool offerTableKey(QKeyEvent* event);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // A press is first announced as a shortcut override, then delivered with the same time stamp.
    struct Announced {
        ulong timestamp;
        int key;
        Qt::KeyboardModifiers modifiers;
        quint32 scanCode;
        quint32 virtualKey;
        bool used;
    };

    static bool sameEvent(const Announced& announced, const QKeyEvent& event);
    bool answer(QKeyEvent* event);
    bool isFocusOfWindow(QObject* watched) const;
    // What the announcement of this press already answered; nothing when there was none, or when
    // it lacked the key codes the press carries, as Qt's own announcement of a made-up press does.
    std::optional<bool> previousAnswer(const QKeyEvent& press) const;

    Explorer& window;
    std::optional<Announced> announced;
    // The last press delivered to another widget (a text field over the table). A field that ignores
    // it lets it travel up to the table, where it must not count as a press of its own.
    const QEvent* pressElsewhere = nullptr;
    ulong pressElsewhereTime = 0;
};

} // namespace orvane
