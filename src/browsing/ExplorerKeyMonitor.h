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
    // A press is first announced as a shortcut override, then delivered; both carry the same data.
    struct Stamp {
        ulong timestamp;
        int key;
        quint32 scanCode;
        Qt::KeyboardModifiers modifiers;
        bool operator==(const Stamp&) const = default;
        static Stamp of(const QKeyEvent& event);
    };

    bool answer(QKeyEvent* event);
    bool isFocusOfWindow(QObject* watched) const;

    Explorer& window;
    // The press answered at its override and whether it was used.
    std::optional<Stamp> answered;
    bool answeredUsed = false;
};

} // namespace orvane
