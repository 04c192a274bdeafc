#pragma once

#include <QHash>
#include <QObject>
#include <QString>
#include <QVariant>
#include <functional>

namespace orvane {

// One thing a person can ask of a window, reached by name from menus, buttons, keys and the guide.
struct Command {
    QString name;
    QString title;
    std::function<void(const QVariant& arg)> run;
    std::function<bool()> enabled;                    // empty: always enabled
    std::function<bool(const QVariant& arg)> checked; // empty: not a checkable command
};

// The typed commands of one window. A command that is not registered is absent: its menu item
// shows greyed and its key is used up without effect.
class WindowCommands : public QObject {
    Q_OBJECT
public:
    explicit WindowCommands(QObject* parent = nullptr) : QObject(parent) {}

    void add(Command command);
    void add(const QString& name, const QString& title, std::function<void()> run,
             std::function<bool()> enabled = {});
    bool contains(const QString& name) const { return commands.contains(name); }
    // The registered command, or null.
    const Command* find(const QString& name) const {
        const auto it = commands.constFind(name);
        return it == commands.cend() ? nullptr : &*it;
    }
    bool isEnabled(const QString& name) const;
    bool isChecked(const QString& name, const QVariant& arg = {}) const;
    QString title(const QString& name) const;
    // Titles that follow the selection ("Pin to Quick access" / "Unpin from Quick access").
    void setTitle(const QString& name, const QString& title);
    QStringList names() const { return commands.keys(); }
    // Runs the command when it is there and enabled; false otherwise.
    bool run(const QString& name, const QVariant& arg = {});
    // While suspended, requests are announced but nothing runs: a way to ask what a key would do.
    void setSuspended(bool on) { suspended = on; }
    // Asked before every command: what the window shows now may not answer it (a phone tab and the
    // local file commands).
    void setGate(std::function<bool(const QString& name)> allows) { gate = std::move(allows); }
    // Asked before a command's own handler runs: what the window shows may run it its own way.
    void setRoute(std::function<bool(const QString& name)> route) { router = std::move(route); }

    // Names that menus, keys or the guide already use for commands still to be built.
    static const QStringList& notYetBuilt();

public slots:
    // The window's state moved: enabled and checked states are read again.
    void refresh() { emit statesChanged(); }

signals:
    void statesChanged();
    // Every request by name, whether or not the command is there.
    void requested(const QString& name, const QVariant& arg);

private:
    QHash<QString, Command> commands;
    std::function<bool(const QString& name)> gate;
    std::function<bool(const QString& name)> router;
    bool suspended = false;
};

} // namespace orvane
