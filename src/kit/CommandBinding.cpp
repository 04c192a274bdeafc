#include "kit/CommandBinding.h"

#include <QAbstractButton>
#include <QAction>
#include <QMenu>

namespace orvane {

QAction* CommandBinding::addTo(WindowCommands& commands, QMenu* menu, const QString& name,
                               const QVariant& arg, const QString& title) {
    const Command* it = commands.find(name);
    QAction* action = menu->addAction(title.isEmpty() && it ? it->title : title);
    action->setProperty("command", name);
    action->setEnabled(commands.isEnabled(name));
    if (it && it->checked) {
        action->setCheckable(true);
        action->setChecked(it->checked(arg));
    }
    QObject::connect(action, &QAction::triggered, &commands,
                     [&commands, name, arg] { commands.run(name, arg); });
    return action;
}

void CommandBinding::bind(WindowCommands& commands, QAbstractButton* button, const QString& name,
                          const QVariant& arg) {
    button->setProperty("command", name);
    QObject::connect(button, &QAbstractButton::clicked, &commands,
                     [&commands, name, arg] { commands.run(name, arg); });
    auto follow = [&commands, button, name] { button->setEnabled(commands.isEnabled(name)); };
    QObject::connect(&commands, &WindowCommands::statesChanged, button, follow);
    follow();
}

} // namespace orvane
