#pragma once

#include <QObject>

namespace orvane {

class Explorer;

// The window's order, hidden-item and filter commands. They change the listing in memory; only
// showing hidden items reads the folder again.
class ListingCommands : public QObject {
    Q_OBJECT
public:
    explicit ListingCommands(Explorer& window);

    void setSort(const QString& key, bool ascending);
    void groupChoice(bool group);
    void toggleHidden();
    // The "this folder" filter of the active tab.
    void setSearchText(const QString& text);

private:
    void registerCommands();
    Explorer& w;
};

} // namespace orvane
