#pragma once

#include "kit/WindowWidgets.h"

class QMainWindow;

namespace orvane {

class Settings;

// Builds the widget tree of one window.
struct ExplorerWidgets : WindowWidgets {
    ExplorerWidgets(QMainWindow* window, Settings& settings);

private:
    QWidget* buildTitleRow(QWidget* parent);
    QWidget* buildNavigationRow(QWidget* parent);
    QWidget* buildActionRow(QWidget* parent);
    QWidget* buildSplit(QWidget* parent, Settings& settings);
    QWidget* buildStatusRow(QWidget* parent);
};

} // namespace orvane
