#pragma once

#include "kit/WindowWidgets.h"

class QMainWindow;

namespace orvane {

// Builds the widget tree of one window.
struct ExplorerWidgets : WindowWidgets {
    explicit ExplorerWidgets(QMainWindow* window);

private:
    QWidget* buildTitleRow(QWidget* parent);
    QWidget* buildNavigationRow(QWidget* parent);
    QWidget* buildActionRow(QWidget* parent);
    QWidget* buildSplit(QWidget* parent);
    QWidget* buildStatusRow(QWidget* parent);
};

} // namespace orvane
