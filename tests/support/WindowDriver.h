#pragma once

#include "browsing/ExplorerEvents.h"
#include "browsing/ExplorerKeyboard.h"
#include "browsing/ListingCommands.h"
#include "browsing/LocalFolderContent.h"
#include "browsing/WindowCommands.h"
#include "browsing/WindowListing.h"
#include "chrome/ExplorerChrome.h"
#include "navigation/PlacesList.h"

#include <QList>
#include <QString>
#include <QStringList>

class QAbstractItemView;

namespace orvane {
class Explorer;
}

namespace orvane::test {

// Selects exactly these rows, leaving the current index alone.
void selectRows(QAbstractItemView& view, const QList<int>& rows);
// The selected rows in ascending order.
QList<int> selectedRows(const QAbstractItemView& view);
// Selects exactly the rows with these names, as Control-clicks would.
void selectNames(Explorer& window, const QStringList& names);
// The window's alert as "title|detail", dismissed; empty when none is showing.
QString takeAlert(Explorer& window);
// Answers the next modal dialog with the button of that text, typing `typed` into a name prompt.
void answerNextDialog(const QString& button, const QString& typed = {});

} // namespace orvane::test
