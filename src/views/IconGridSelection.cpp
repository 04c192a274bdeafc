#include "views/IconGridSelection.h"

#include <QItemSelectionModel>
#include <QLocale>
#include <algorithm>

namespace orvane {

void IconGridSelection::setSelectionModel(QItemSelectionModel* selectionModel) {
    model = selectionModel;
    reset();
}

void IconGridSelection::reset() {
    focus = anchor = firstSelected();
    controlFocusMode = false;
    typePrefix.clear();
}

void IconGridSelection::clampTo(int total) {
    if (focus && *focus >= total) focus = firstSelected();
    if (anchor && *anchor >= total) anchor = focus;
}

int IconGridSelection::count() const {
    return model && model->model() ? model->model()->rowCount() : 0;
}

bool IconGridSelection::isSelected(int index) const {
    return model && model->isSelected(model->model()->index(index, 0));
}

std::optional<int> IconGridSelection::firstSelected() const {
    if (!model || !model->hasSelection()) return std::nullopt;
    std::optional<int> first;
    for (const QItemSelectionRange& part : model->selection())
        if (!first || part.top() < *first) first = part.top();
    return first;
}

bool IconGridSelection::hasMultipleSelected() const {
    if (!model) return false;
    const QItemSelection selection = model->selection();
    return selection.size() > 1 || (selection.size() == 1 && selection.first().height() > 1);
}

QItemSelection IconGridSelection::range(int from, int to) const {
    // Whole rows, so that taking one item out of a row selection leaves no stray columns behind.
    const QAbstractItemModel* items = model->model();
    const int lastColumn = std::max(0, items->columnCount() - 1);
    return QItemSelection(items->index(std::min(from, to), 0), items->index(std::max(from, to), lastColumn));
}

void IconGridSelection::commit(const QItemSelection& selection, std::optional<int> newFocus) {
    focus = newFocus;
    if (!model) return;
    model->select(selection, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    if (newFocus) model->setCurrentIndex(model->model()->index(*newFocus, 0), QItemSelectionModel::NoUpdate);
}

void IconGridSelection::selectOnly(int index) {
    anchor = index;
    commit(range(index, index), index);
}

void IconGridSelection::selectAll() {
    if (count() > 0) commit(range(0, count() - 1), focus);
}

void IconGridSelection::clear() {
    commit(QItemSelection(), focus);
}

void IconGridSelection::selectRange(int from, int to, bool add) {
    QItemSelection selection = range(from, to);
    if (add) selection.merge(model->selection(), QItemSelectionModel::Select);
    commit(selection, to);
}

std::optional<int> IconGridSelection::move(const IconGridLayout& layout, GridKey key, bool primary,
                                           bool shift) {
    if (count() == 0) return std::nullopt;
    const bool arrow =
        key == GridKey::Left || key == GridKey::Right || key == GridKey::Up || key == GridKey::Down;
    const std::optional<int> known = focus ? focus : firstSelected();
    const int current = known.value_or(key == GridKey::Left || key == GridKey::Up ? count() - 1 : 0);
    const int target = !known && arrow ? current : gridKeyTarget(layout, key, current);
    if (primary && !shift) {
        controlFocusMode = true;
        focus = target;
        return target;
    }
    if (shift) {
        if (!anchor) anchor = current;
        selectRange(*anchor, target, false);
        return target;
    }
    controlFocusMode = false;
    selectOnly(target);
    return target;
}

bool IconGridSelection::pick(bool primary) {
    if (!primary && !controlFocusMode) return false;
    if (count() == 0) return true;
    const int item = focus.value_or(firstSelected().value_or(0));
    QItemSelection selection = model->selection();
    selection.merge(range(item, item),
                    isSelected(item) ? QItemSelectionModel::Deselect : QItemSelectionModel::Select);
    controlFocusMode = true;
    anchor = item;
    commit(selection, item);
    return true;
}

QString IconGridSelection::fold(const QString& text) {
    const QString decomposed = text.normalized(QString::NormalizationForm_KD);
    QString plain;
    plain.reserve(decomposed.size());
    for (const QChar c : decomposed)
        if (c.category() != QChar::Mark_NonSpacing) plain.append(c);
    // Upper case first, so that letters which fold to two (ß to SS) fold alike either way.
    const QLocale locale;
    return locale.toLower(locale.toUpper(plain));
}

std::optional<int> IconGridSelection::typeSelect(const QString& text, double seconds,
                                                 const std::function<QString(int)>& nameAt) {
    typePrefix = seconds - lastTypeTime < typeSelectPause ? typePrefix + text : text;
    lastTypeTime = seconds;
    const int total = count();
    if (total == 0 || typePrefix.isEmpty()) return std::nullopt;
    const QString folded = fold(typePrefix);
    // One letter pressed again and again steps through the names that start with it.
    const bool oneLetter =
        typePrefix.at(0).isLetter() &&
        std::all_of(folded.begin(), folded.end(), [&](QChar c) { return c == folded.at(0); });
    const QString key = oneLetter ? folded.left(1) : folded;
    const int start = focus ? (*focus + (oneLetter ? 1 : 0)) % total : 0;
    for (int step = 0; step < total; ++step) {
        const int index = (start + step) % total;
        if (!fold(nameAt(index)).startsWith(key)) continue;
        controlFocusMode = false;
        selectOnly(index);
        return index;
    }
    return std::nullopt;
}

bool IconGridSelection::press(std::optional<int> item, bool primary, bool shift) {
    controlFocusMode = false;
    typePrefix.clear();
    if (!item) {
        if (!primary && !shift) clear();
        return false;
    }
    if (shift) {
        const int from = anchor.value_or(focus.value_or(firstSelected().value_or(*item)));
        if (!anchor) anchor = from;
        selectRange(from, *item, primary);
        return false;
    }
    if (primary) {
        QItemSelection selection = model->selection();
        selection.merge(range(*item, *item),
                        isSelected(*item) ? QItemSelectionModel::Deselect : QItemSelectionModel::Select);
        anchor = item;
        commit(selection, item);
        return false;
    }
    if (isSelected(*item) && hasMultipleSelected()) {
        focus = item;
        return true;
    }
    selectOnly(*item);
    return false;
}

void IconGridSelection::beginBand(bool keepSelection) {
    bandBase = keepSelection && model ? model->selection() : QItemSelection();
}

void IconGridSelection::updateBand(const IconGridLayout& layout, const QRectF& band) {
    QItemSelection selection = bandBase;
    std::optional<int> runStart, runEnd;
    // Cells meet the band in index order, so consecutive ones make one range each.
    const auto flush = [&] {
        if (runStart) selection.merge(range(*runStart, *runEnd), QItemSelectionModel::Select);
    };
    layout.forEachIndexIn(band, [&](int index) {
        if (runEnd && index == *runEnd + 1) {
            runEnd = index;
            return;
        }
        flush();
        runStart = runEnd = index;
    });
    flush();
    commit(selection, runStart ? runStart : focus);
}

} // namespace orvane
