#pragma once

#include "core/Entry.h"

#include <QWidget>
#include <vector>

class QLabel;
class QToolButton;

namespace orvane {

// The right-hand pane that describes the selection, or the current folder when nothing is selected.
class DetailsPane : public QWidget {
    Q_OBJECT
public:
    explicit DetailsPane(QWidget* parent = nullptr);
    // `folder` names where one search result lies.
    void showItems(const std::vector<Entry>& items, const QString& currentPath, const QString& folder = {});

    QString title() const;
    QString meta() const;

signals:
    void closeRequested();

private:
    QLabel* image;
    QLabel* titleLabel;
    QLabel* pathLabel;
    QLabel* metaLabel;
};

} // namespace orvane
