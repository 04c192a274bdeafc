#include "window/ExplorerWidgets.h"

#include "chrome/DetailsPane.h"
#include "chrome/ExplorerSidebarSplit.h"
#include "chrome/ExplorerTabStrip.h"
#include "chrome/TitleRow.h"
#include "core/ShortcutRows.h"
#include "kit/AccessibleName.h"
#include "kit/EditablePathBox.h"
#include "kit/Palette.h"
#include "kit/Symbols.h"
#include "kit/TransferProgressEdge.h"
#include "preview/PreviewPane.h"
#include "views/FileTable.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>
#include <QToolButton>
#include <QVBoxLayout>

namespace orvane {

namespace {

QToolButton* symbolButton(QWidget* parent, const char* symbol, const QString& tip,
                          const char* title = nullptr) {
    auto* button = new QToolButton(parent);
    button->setIcon(symbolIcon(QLatin1String(symbol)));
    button->setIconSize(QSize(16, 16));
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::NoFocus);
    if (!tip.isEmpty()) button->setToolTip(tip);
    if (title) {
        button->setText(QString::fromUtf8(title));
        button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    }
    AccessibleName::name(button);
    return button;
}

QString keyTip(const char* title, const char* command, PhysicalKey key) {
    return toolTipWithKey(QLatin1String(title), QLatin1String(command), key);
}

QHBoxLayout* row(QWidget* owner, int left, int spacing) {
    auto* layout = new QHBoxLayout(owner);
    layout->setContentsMargins(left, 0, 8, 0);
    layout->setSpacing(spacing);
    return layout;
}

} // namespace

ExplorerWidgets::ExplorerWidgets(QMainWindow* window, Settings& settings) {
    auto* central = new QWidget(window);
    central->setObjectName(QStringLiteral("explorerShell"));
    auto* column = new QVBoxLayout(central);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(buildTitleRow(central));
    column->addWidget(buildNavigationRow(central));
    column->addWidget(buildActionRow(central));
    transferProgress = new TransferProgressEdge(central);
    column->addWidget(transferProgress);
    column->addWidget(buildSplit(central, settings), 1);
    column->addWidget(buildStatusRow(central));
    window->setCentralWidget(central);
}

QWidget* ExplorerWidgets::buildTitleRow(QWidget* parent) {
    titleRow = new TitleRow(parent);
    QHBoxLayout* layout = row(titleRow, 8, 2);
    tabStrip = new ExplorerTabStrip(titleRow);
    minimizeButton = symbolButton(titleRow, "minus", "Minimize");
    zoomButton = symbolButton(titleRow, "square", "Maximize / Restore");
    closeButton = symbolButton(titleRow, "xmark", "Close window");
    closeButton->setObjectName(QStringLiteral("closeWindowButton"));
    // The application menu lives in the title row; on a Mac it becomes the system's menu bar.
    menuBar = new QMenuBar(titleRow);
    menuBar->setAccessibleName(QStringLiteral("Menu"));
    // The button that shows the menus that do not fit.
    if (auto* more = menuBar->findChild<QToolButton*>())
        more->setAccessibleName(QStringLiteral("More menus"));
    layout->addWidget(menuBar, 0, Qt::AlignVCenter);
    layout->addSpacing(8);
    layout->addWidget(tabStrip, 1);
    layout->addSpacing(10);
    for (QToolButton* b : {minimizeButton, zoomButton, closeButton})
        layout->addWidget(b);
    return titleRow;
}

QWidget* ExplorerWidgets::buildNavigationRow(QWidget* parent) {
    auto* owner = new QWidget(parent);
    owner->setObjectName(QStringLiteral("navigationRow"));
    owner->setFixedHeight(48);
    QHBoxLayout* layout = row(owner, 10, 4);
    using P = PhysicalKey;
    backButton = symbolButton(owner, "arrow.left",
                              toolTipWithKey(QStringLiteral("Back"), QStringLiteral("back"), P::Left));
    forwardButton = symbolButton(
        owner, "arrow.right", toolTipWithKey(QStringLiteral("Forward"), QStringLiteral("forward"), P::Right));
    upButton = symbolButton(owner, "arrow.up",
                            toolTipWithKey(QStringLiteral("Up one level"), QStringLiteral("up"), P::Up));
    refreshButton =
        symbolButton(owner, "arrow.clockwise",
                     toolTipWithKey(QStringLiteral("Refresh"), QStringLiteral("refreshAction"), P::F5));
    for (QToolButton* b : {backButton, forwardButton, upButton, refreshButton})
        layout->addWidget(b);
    layout->addSpacing(6);
    pathBox = new EditablePathBox(owner);
    pathBox->setObjectName(QStringLiteral("pathBox"));
    pathBox->setFixedHeight(34);
    pathBox->addressField()->setPlaceholderText(
        toolTipWithKey(QStringLiteral("Enter a folder path"), QStringLiteral("focusAddress"), P::L));
    pathBox->addressField()->setAccessibleName(QStringLiteral("Folder path"));
    editAddressButton =
        symbolButton(owner, "chevron.down",
                     toolTipWithKey(QStringLiteral("Edit address"), QStringLiteral("focusAddress"), P::L));
    layout->addWidget(pathBox, 1);
    layout->addWidget(editAddressButton);
    layout->addSpacing(6);
    searchField = new QLineEdit(owner);
    searchField->setObjectName(QStringLiteral("searchField"));
    searchField->setPlaceholderText(QStringLiteral("Search this folder"));
    searchField->setMinimumWidth(140);
    searchField->setMaximumWidth(270);
    searchField->setFixedHeight(34);
    searchField->setAccessibleName(QStringLiteral("Search"));
    searchField
        ->addAction(symbolIcon(QStringLiteral("magnifyingglass"), Palette::muted()),
                    QLineEdit::LeadingPosition)
        ->setText(QStringLiteral("Search"));
    clearSearchButton = symbolButton(owner, "xmark.circle.fill", "Clear search");
    clearSearchButton->hide();
    searchScopeButton = symbolButton(owner, "slider.horizontal.3", "Search scope");
    layout->addWidget(searchField, 1);
    layout->addWidget(clearSearchButton);
    layout->addWidget(searchScopeButton);
    return owner;
}

QWidget* ExplorerWidgets::buildActionRow(QWidget* parent) {
    auto* owner = new QWidget(parent);
    owner->setObjectName(QStringLiteral("actionRow"));
    owner->setFixedHeight(42);
    QHBoxLayout* layout = row(owner, 10, 2);
    const struct {
        const char* key;
        const char* symbol;
        QString tip;
        const char* title;
        bool separatorBefore;
    } buttons[] = {
        {"new", "plus.circle", keyTip("New folder", "newFolder", PhysicalKey::N), "New  ⌄", false},
        {"cut", "scissors", keyTip("Cut", "cutAction", PhysicalKey::X), nullptr, true},
        {"copy", "square.on.square", keyTip("Copy", "copyAction", PhysicalKey::C), nullptr, false},
        {"paste", "doc.on.clipboard", keyTip("Paste", "pasteAction", PhysicalKey::V), nullptr, false},
        {"rename", "character.cursor.ibeam", keyTip("Rename", "renameAction", PhysicalKey::F2), nullptr,
         false},
        {"trash", "trash", keyTip("Move to Trash", "trashAction", PhysicalKey::ForwardDelete), nullptr,
         false},
        {"sort", "arrow.up.arrow.down", {}, "Sort  ⌄", true},
        {"view", "list.bullet", {}, "View  ⌄", false},
        {"more", "ellipsis", QStringLiteral("More options"), nullptr, false},
        {"send", "arrow.up.doc", {}, "Send files", true},
        {"save", "arrow.down.doc", {}, "Copy to Mac", false},
    };
    for (const auto& b : buttons) {
        if (b.separatorBefore) layout->addSpacing(14);
        actionButtons.insert(QLatin1String(b.key), symbolButton(owner, b.symbol, b.tip, b.title));
        layout->addWidget(actionButtons.value(QLatin1String(b.key)));
    }
    layout->addStretch(1);
    actionButtons.insert(QStringLiteral("customize"), symbolButton(owner, "gearshape", "Customize Orvane"));
    actionButtons.insert(QStringLiteral("details"),
                         symbolButton(owner, "sidebar.right", "Show / hide details pane", "Details"));
    actionButtons.insert(QStringLiteral("pin"),
                         symbolButton(owner, "pin",
                                      "Pin selected folders or the current folder to Quick access",
                                      "Pin folder"));
    for (const char* key : {"customize", "pin", "details"})
        layout->addWidget(action(key));
    action("details")->setCheckable(true);
    action("send")->hide();
    action("save")->hide();
    return owner;
}

QWidget* ExplorerWidgets::buildSplit(QWidget* parent, Settings& settings) {
    split = new ExplorerSidebarSplit(parent);
    navigationPane = new QWidget(split);
    navigationPane->setMinimumWidth(ExplorerSidebarSplit::navigationMinimum);
    navigationPane->setObjectName(QStringLiteral("navigationPane"));
    auto* paneColumn = new QVBoxLayout(navigationPane);
    paneColumn->setContentsMargins(6, 6, 6, 6);
    storageButton =
        symbolButton(navigationPane, "internaldrive", "View storage on all connected drives", "Storage");
    paneColumn->addStretch(1);
    paneColumn->addWidget(storageButton, 0, Qt::AlignLeft);

    // The empty label floats over the table in the same grid cell, so it stays centred at any size.
    fileArea = new QWidget(split);
    fileArea->setObjectName(QStringLiteral("fileArea"));
    // The name column and the scroll bar.
    fileArea->setMinimumWidth(180);
    auto* grid = new QGridLayout(fileArea);
    grid->setContentsMargins(0, 0, 0, 0);
    table = new FileTable(settings, fileArea);
    table->setAccessibleName(QStringLiteral("Files"));
    emptyLabel = new QLabel(fileArea);
    emptyLabel->setAlignment(Qt::AlignCenter);
    emptyLabel->setForegroundRole(QPalette::PlaceholderText);
    emptyLabel->setAttribute(Qt::WA_TransparentForMouseEvents);
    emptyLabel->hide();
    grid->addWidget(table, 0, 0);
    grid->addWidget(emptyLabel, 0, 0, Qt::AlignCenter);

    detailsPane = new DetailsPane(split);
    detailsPane->setObjectName(QStringLiteral("detailsPane"));
    detailsPane->hide();
    previewPane = new PreviewPane(split);
    previewPane->setObjectName(QStringLiteral("previewPane"));
    previewPane->hide();
    split->addWidget(navigationPane);
    split->addWidget(fileArea);
    split->addWidget(detailsPane);
    split->addWidget(previewPane);
    split->setStretchFactor(0, 0);
    split->setStretchFactor(1, 1);
    split->setStretchFactor(2, 0);
    split->setStretchFactor(3, 0);
    return split;
}

QWidget* ExplorerWidgets::buildStatusRow(QWidget* parent) {
    auto* owner = new QWidget(parent);
    owner->setObjectName(QStringLiteral("statusRow"));
    owner->setFixedHeight(28);
    QHBoxLayout* layout = row(owner, 14, 6);
    status = new QLabel(owner);
    cancelJobButton = new QToolButton(owner);
    cancelJobButton->setText(QStringLiteral("Cancel"));
    cancelJobButton->setAccessibleName(QStringLiteral("Cancel transfer"));
    cancelJobButton->setToolTip(QStringLiteral("Cancel transfer · Esc"));
    cancelJobButton->hide();
    countLabel = new QLabel(owner);
    countLabel->setForegroundRole(QPalette::PlaceholderText);
    layout->addWidget(status);
    layout->addWidget(cancelJobButton);
    layout->addStretch(1);
    layout->addWidget(countLabel);
    return owner;
}

} // namespace orvane
