#pragma once

#include <QAccessibleActionInterface>
#include <QAccessibleInterface>
#include <QPointer>

namespace orvane {

class ExplorerIconCanvas;

// One item of the icon canvas as assistive tools see it: named, with its path as help, its frame on
// the screen, selectable, and selected by pressing it. Made only when a tool asks for it.
class ExplorerIconAccessibilityItem : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    ExplorerIconAccessibilityItem(ExplorerIconCanvas* canvas, int index);

    bool isValid() const override;
    QObject* object() const override { return nullptr; }
    QWindow* window() const override;
    QAccessibleInterface* parent() const override;
    QAccessibleInterface* child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    QString text(QAccessible::Text kind) const override;
    void setText(QAccessible::Text, const QString&) override {}
    QRect rect() const override;
    QAccessible::Role role() const override { return QAccessible::ListItem; }
    QAccessible::State state() const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    QStringList actionNames() const override;
    void doAction(const QString& actionName) override;
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

    int index() const { return item; }

private:
    QPointer<ExplorerIconCanvas> canvas;
    int item;
};

} // namespace orvane
