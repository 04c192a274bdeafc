#pragma once

#include <QObject>

class QKeyEvent;
class QWidget;

namespace orvane {

// The application-wide key watch for windows that are no browser windows: Escape ends a modal
// dialog, and the text fields of dialogs get the Control keys of the browser's fields.
class ModalShortcuts : public QObject {
    Q_OBJECT
public:
    // The code a modal dialog ends with when Escape dismisses it.
    static constexpr int escapeCode = -1001;

    explicit ModalShortcuts(QObject* parent = nullptr);
    ~ModalShortcuts() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool handleKey(QWidget* receiver, QKeyEvent* event);
};

} // namespace orvane
