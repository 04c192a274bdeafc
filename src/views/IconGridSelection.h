#pragma once

#include "views/IconGrid.h"

#include <QItemSelection>
#include <QPointer>
#include <QString>
#include <functional>
#include <optional>

class QItemSelectionModel;

namespace orvane {

// What the keys and the mouse of an icon grid do to the selection. The selection itself lives in the
// table's selection model, the one truth in every view mode; this keeps only the focus, the range
// anchor and the type-select prefix, and writes every change straight to that model.
class IconGridSelection {
public:
    static constexpr double typeSelectPause = 0.85; // seconds after which a typed letter starts afresh

    void setSelectionModel(QItemSelectionModel* model);
    QItemSelectionModel* selectionModel() const { return model; }
    // After a new listing or mode: focus and anchor go back to the first selected item.
    void reset();
    // Drops a focus or anchor that no longer exists.
    void clampTo(int count);

    int count() const;
    bool isSelected(int index) const;
    std::optional<int> firstSelected() const;
    bool hasMultipleSelected() const;

    std::optional<int> focus;
    std::optional<int> anchor;
    // The focus ring was moved apart from the selection (Primary and arrows), so Space picks.
    bool controlFocusMode = false;

    // A movement key; answers the index to bring into view, or nothing with an empty listing.
    std::optional<int> move(const IconGridLayout& layout, GridKey key, bool primary, bool shift);
    // Space with Primary, or in control-focus mode: toggles the focused item. False when not taken.
    bool pick(bool primary);
    // Selects the next item whose name starts with what was typed; answers it, or nothing.
    std::optional<int> typeSelect(const QString& text, double seconds,
                                  const std::function<QString(int)>& nameAt);

    // A button press on `item` (nothing on a gap). Answers whether the press keeps a multiple selection
    // for a drag, to be narrowed on release.
    bool press(std::optional<int> item, bool primary, bool shift);
    // The selection that a rubber band started on empty space adds to.
    void beginBand(bool keepSelection);
    void updateBand(const IconGridLayout& layout, const QRectF& band);

    void selectOnly(int index);
    void selectAll();
    void clear();

    // Name and diacritics folded away, so "É" finds "e" and "Straße" finds "STRASSE".
    static QString fold(const QString& text);

private:
    void commit(const QItemSelection& selection, std::optional<int> newFocus);
    void selectRange(int from, int to, bool add);
    QItemSelection range(int from, int to) const;

    QPointer<QItemSelectionModel> model;
    QString typePrefix;
    double lastTypeTime = -1e9;
    QItemSelection bandBase;
};

} // namespace orvane
