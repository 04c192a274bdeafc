#include "browsing/ExplorerWidgets.h"

#include "browsing/EditablePathBox.h"
#include "browsing/Palette.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QStyle>
#include <QTabBar>
#include <QTableView>
#include <QToolButton>
#include <QVBoxLayout>

namespace orvane {

namespace {

QToolButton* navButton(QWidget* parent, const char* themeName, QStyle::StandardPixmap fallback,
                       const char* tip) {
    auto* button = new QToolButton(parent);
    button->setIcon(QIcon::fromTheme(QLatin1String(themeName), parent->style()->standardIcon(fallback)));
    button->setToolTip(QLatin1String(tip));
    button->setAutoRaise(true);
    button->setIconSize(QSize(18, 18));
    return button;
}

QTableView* makeTable(QWidget* parent) {
    auto* table = new QTableView(parent);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setSelectionMode(QAbstractItemView::ExtendedSelection);
    table->setShowGrid(false);
    table->setWordWrap(false);
    table->setSortingEnabled(false);
    table->setIconSize(QSize(18, 18));
    table->verticalHeader()->hide();
    table->verticalHeader()->setDefaultSectionSize(32);
    table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table->horizontalHeader()->setHighlightSections(false);
    table->horizontalHeader()->setStretchLastSection(true);
    table->setFrameShape(QFrame::NoFrame);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    return table;
}

} // namespace

ExplorerWidgets::ExplorerWidgets(QMainWindow* window) {
    auto* central = new QWidget(window);
    auto* column = new QVBoxLayout(central);
    column->setContentsMargins(8, 4, 8, 4);
    column->setSpacing(6);

    auto* tabRow = new QHBoxLayout;
    tabBar = new QTabBar(central);
    tabBar->setTabsClosable(true);
    tabBar->setExpanding(false);
    tabBar->setDocumentMode(true);
    newTabButton = navButton(central, "tab-new", QStyle::SP_FileDialogNewFolder, "New tab");
    tabRow->addWidget(tabBar);
    tabRow->addWidget(newTabButton);
    tabRow->addStretch(1);
    column->addLayout(tabRow);

    auto* navRow = new QHBoxLayout;
    backButton = navButton(central, "go-previous", QStyle::SP_ArrowBack, "Back");
    forwardButton = navButton(central, "go-next", QStyle::SP_ArrowForward, "Forward");
    upButton = navButton(central, "go-up", QStyle::SP_ArrowUp, "Up");
    refreshButton = navButton(central, "view-refresh", QStyle::SP_BrowserReload, "Refresh");
    pathBox = new EditablePathBox(central);
    searchField = new QLineEdit(central);
    searchField->setClearButtonEnabled(true);
    searchField->setMinimumWidth(140);
    searchField->setMaximumWidth(270);
    for (QWidget* w : {static_cast<QWidget*>(backButton), static_cast<QWidget*>(forwardButton),
                       static_cast<QWidget*>(upButton), static_cast<QWidget*>(refreshButton)})
        navRow->addWidget(w);
    navRow->addWidget(pathBox, 1);
    navRow->addWidget(searchField);
    column->addLayout(navRow);

    // The empty label floats over the table in the same grid cell, so it stays centred at any size.
    auto* fileArea = new QGridLayout;
    table = makeTable(central);
    emptyLabel = new QLabel(central);
    emptyLabel->setAlignment(Qt::AlignCenter);
    emptyLabel->setForegroundRole(QPalette::PlaceholderText);
    emptyLabel->setAttribute(Qt::WA_TransparentForMouseEvents);
    emptyLabel->hide();
    fileArea->addWidget(table, 0, 0);
    fileArea->addWidget(emptyLabel, 0, 0, Qt::AlignCenter);
    column->addLayout(fileArea, 1);

    auto* statusRow = new QHBoxLayout;
    status = new QLabel(central);
    countLabel = new QLabel(central);
    countLabel->setForegroundRole(QPalette::PlaceholderText);
    statusRow->addWidget(status);
    statusRow->addStretch(1);
    statusRow->addWidget(countLabel);
    column->addLayout(statusRow);

    window->setCentralWidget(central);
}

} // namespace orvane
