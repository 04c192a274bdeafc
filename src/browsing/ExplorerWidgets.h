#pragma once

class QLabel;
class QLineEdit;
class QMainWindow;
class QTabBar;
class QTableView;
class QToolButton;
class QWidget;

namespace orvane {

class EditablePathBox;

// The widgets of one window, built once; the window controller wires them to its operations.
struct ExplorerWidgets {
    explicit ExplorerWidgets(QMainWindow* window);

    QTabBar* tabBar;
    QToolButton* newTabButton;
    QToolButton* backButton;
    QToolButton* forwardButton;
    QToolButton* upButton;
    QToolButton* refreshButton;
    EditablePathBox* pathBox;
    QLineEdit* searchField;
    QTableView* table;
    QLabel* emptyLabel;
    QLabel* status;
    QLabel* countLabel;
};

} // namespace orvane
