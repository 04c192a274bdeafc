#include "core/WindowCommands.h"

namespace orvane {

void WindowCommands::add(Command command) {
    const QString name = command.name;
    commands.insert(name, std::move(command));
    emit statesChanged();
}

void WindowCommands::add(const QString& name, const QString& title, std::function<void()> run,
                         std::function<bool()> enabled) {
    add(Command{name, title, [run = std::move(run)](const QVariant&) { run(); }, std::move(enabled), {}});
}

bool WindowCommands::isEnabled(const QString& name) const {
    const auto it = commands.constFind(name);
    return it != commands.cend() && it->run && (!gate || gate(name)) && (!it->enabled || it->enabled());
}

bool WindowCommands::isChecked(const QString& name, const QVariant& arg) const {
    const auto it = commands.constFind(name);
    return it != commands.cend() && it->checked && it->checked(arg);
}

QString WindowCommands::title(const QString& name) const {
    return commands.value(name).title;
}

void WindowCommands::setTitle(const QString& name, const QString& title) {
    const auto it = commands.find(name);
    if (it != commands.end()) it->title = title;
}

bool WindowCommands::run(const QString& name, const QVariant& arg) {
    emit requested(name, arg);
    if (suspended || !isEnabled(name)) return false;
    if (router && router(name)) return true;
    // A copy: the handler may replace or remove its own command.
    const auto handler = commands.value(name).run;
    handler(arg);
    return true;
}

const QStringList& WindowCommands::notYetBuilt() {
    static const QStringList names = {
        QStringLiteral("revealAction"),
    };
    return names;
}

} // namespace orvane
