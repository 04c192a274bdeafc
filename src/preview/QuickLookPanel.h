#pragma once

#include "core/Entry.h"

#include <QWidget>
#include <vector>

class QLabel;

namespace orvane {

class PreviewLoader;
class PreviewRenderers;
class PreviewView;

// The floating preview of a selection: one item at a time through the pane's renderers, stepped
// with the arrow keys, closed by Space or Escape.
class QuickLookPanel : public QWidget {
    Q_OBJECT
public:
    // A window of its own over `window`, so the window's key tables never see its keys.
    explicit QuickLookPanel(QWidget* window);

    void open(const std::vector<Entry>& items, const PreviewRenderers& renderers);
    // The window's selection moved while the panel shows: the panel follows, leaving the keys there.
    void follow(const std::vector<Entry>& items);
    // Moves by `by` items, stopping at either end.
    void step(int by);

    int index() const { return at; }
    int count() const { return int(items.size()); }
    PreviewView* view() const { return host; }

signals:
    void previewShown();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void showItem();

    std::vector<Entry> items;
    int at = 0;
    PreviewLoader* loader;
    PreviewView* host;
    QLabel* nameLabel;
    QLabel* positionLabel;
};

} // namespace orvane
