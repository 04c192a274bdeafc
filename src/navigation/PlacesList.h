#pragma once

#include <QObject>
#include <QUrl>
#include <memory>
#include <vector>

namespace orvane {

class Explorer;
class PinnedStore;
struct Entry;

// The navigation pane as a plain list: Home, then the Quick access pins. It owns the window's
// view of the pins and the pin command.
class PlacesList : public QObject {
    Q_OBJECT
public:
    explicit PlacesList(Explorer& window);
    ~PlacesList() override;

    PinnedStore& pins() { return *store; }
    // Selected plain folders, or the current folder when nothing is selected.
    std::vector<Entry> pinTargets() const;
    bool allTargetsPinned() const;
    // Unpins when every target is pinned, otherwise pins the ones that are not.
    void pinAction();
    void rebuild();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void followLocation();
    void updatePinCommand();
    bool key(int physicalKey);

    Explorer& w;
    std::unique_ptr<PinnedStore> store;
};

} // namespace orvane
