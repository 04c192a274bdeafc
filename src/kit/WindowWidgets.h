#pragma once

#include <QMap>
#include <QString>

class QLabel;
class QLineEdit;
class QMenuBar;
class QToolButton;
class QWidget;

namespace orvane {

class DetailsPane;
class ExplorerSidebarSplit;
class EditablePathBox;
class ExplorerTabStrip;
class FileTable;
class PreviewPane;
class TitleRow;
class TransferProgressEdge;

// The widgets of one window, built once by the window; its parts wire themselves to them.
struct WindowWidgets {
    // title row
    TitleRow* titleRow;
    QMenuBar* menuBar;
    QToolButton* minimizeButton;
    QToolButton* zoomButton;
    QToolButton* closeButton;
    ExplorerTabStrip* tabStrip;
    // navigation row
    QToolButton* backButton;
    QToolButton* forwardButton;
    QToolButton* upButton;
    QToolButton* refreshButton;
    EditablePathBox* pathBox;
    QToolButton* editAddressButton;
    QLineEdit* searchField;
    QToolButton* clearSearchButton;
    QToolButton* searchScopeButton;
    // action row: "new", "cut", "copy", "paste", "rename", "trash", "sort", "view", "more",
    // "customize", "details", "pin", "send", "save"
    QMap<QString, QToolButton*> actionButtons;
    TransferProgressEdge* transferProgress;
    // the split
    ExplorerSidebarSplit* split;
    // The navigation subsystem puts its tree on top; its focus proxy is the tree.
    QWidget* navigationPane;
    QToolButton* storageButton;
    // The file views share one grid cell of the file area: the table, and views that plug in beside it.
    QWidget* fileArea;
    FileTable* table;
    QLabel* emptyLabel;
    DetailsPane* detailsPane;
    PreviewPane* previewPane; // beside the details pane, never shown with it
    // status row
    QLabel* status;
    QToolButton* cancelJobButton; // beside the status while a job holds the window
    QLabel* countLabel;

    QToolButton* action(const char* key) const { return actionButtons.value(QLatin1String(key)); }
};

} // namespace orvane
