#pragma once

#include <QString>
#include <QStringList>

namespace orvane {
class Explorer;
}

namespace orvane::test {

// Selects exactly the rows with these names, as Control-clicks would.
void selectNames(Explorer& window, const QStringList& names);
// The window's alert as "title|detail", dismissed; empty when none is showing.
QString takeAlert(Explorer& window);
// Answers the next modal dialog with the button of that text, typing `typed` into a name prompt.
void answerNextDialog(const QString& button, const QString& typed = {});

} // namespace orvane::test
