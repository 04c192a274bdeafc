#include "system/FolderAccessPanel.h"

#include "core/BrowserWindow.h"
#include "core/ExplorerEvents.h"
#include "core/WindowCommands.h"
#include "core/WindowListing.h"
#include "kit/WindowWidgets.h"
#include "platform/FolderAccess.h"
#include "platform/NativePath.h"
#include "system/FolderPortal.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace orvane {

FolderAccessPanel::FolderAccessPanel(BrowserWindow& window)
    : QObject(window.widget()), w(window), portal(new FolderPortal(this)) {
    build();
    connect(&w.events(), &ExplorerEvents::listingChanged, this, &FolderAccessPanel::update);
    connect(&w.events(), &ExplorerEvents::locationChanged, this, &FolderAccessPanel::update);
}

void FolderAccessPanel::build() {
    QWidget* area = w.widgets().fileArea;
    frame = new QWidget(area);
    frame->setObjectName(QStringLiteral("folderAccessPanel"));
    frame->setAccessibleName(QStringLiteral("Folder access"));
    frame->setAutoFillBackground(true);
    frame->setBackgroundRole(QPalette::Base);
    frame->hide();
    auto* column = new QWidget(frame);
    column->setFixedWidth(420);
    auto* rows = new QVBoxLayout(column);
    rows->setSpacing(14);
    title = new QLabel(column);
    QFont font = title->font();
    font.setPixelSize(15);
    font.setWeight(QFont::DemiBold);
    title->setFont(font);
    title->setWordWrap(true);
    message = new QLabel(column);
    message->setWordWrap(true);
    rows->addWidget(title);
    rows->addWidget(message);
    auto* buttons = new QHBoxLayout;
    const auto button = [&](const QString& text, auto action) {
        auto* b = new QPushButton(text, column);
        b->setAccessibleName(QString(text).remove(QStringLiteral("…")));
        connect(b, &QPushButton::clicked, this, action);
        buttons->addWidget(b);
        return b;
    };
    allow = button(QStringLiteral("Allow folder access…"), [this] { requestAccess(); });
    allow->setToolTip(
        QStringLiteral("Choose this folder in the desktop's dialog to allow Orvane to read it"));
    button(QStringLiteral("Try again"), [this] { w.refresh(); });
    button(QStringLiteral("Go up"), [this] { w.commands().run(QStringLiteral("up")); });
    button(QStringLiteral("Properties"), [this] { w.commands().run(QStringLiteral("propertiesAction")); });
    buttons->addStretch();
    rows->addLayout(buttons);
    auto* centre = new QGridLayout(frame);
    centre->addWidget(column, 0, 0, Qt::AlignCenter);
    static_cast<QGridLayout*>(area->layout())->addWidget(frame, 0, 0);
}

// A failed read leaves the listing empty; only then is the folder asked why.
void FolderAccessPanel::update() {
    const QUrl url = w.current();
    const bool denied = url.isLocalFile() && w.listing().entries().empty() &&
                        FolderAccess::isPermissionError(FolderAccess::readFailure(url.toLocalFile()));
    blocked = denied ? url.toLocalFile() : QString();
    frame->setVisible(denied);
    if (!denied) return;
    frame->raise();
    w.widgets().emptyLabel->hide();
    title->setText(QStringLiteral("Access to ") + folderName(url) + QStringLiteral(" is blocked"));
    message->setText(QStringLiteral("You do not have permission to see what this folder holds. Its owner "
                                    "can allow it, or you can go elsewhere."));
    allow->setVisible(FolderPortal::available());
}

void FolderAccessPanel::requestAccess() {
    if (blocked.isEmpty()) return;
    const QString name = folderName(QUrl::fromLocalFile(blocked));
    portal->choose(blocked, QStringLiteral("Allow ") + name + QStringLiteral(" access"),
                   [this, folder = blocked](const QString& path) {
                       if (!path.isEmpty() && folder == blocked) chosen(path);
                   });
}

void FolderAccessPanel::chosen(const QString& path) {
    const auto identity = [](const QString& p) {
        const QString resolved = NativePath::canonical(p);
        return resolved.isEmpty() ? p : resolved;
    };
    if (identity(path) == identity(blocked)) {
        w.refresh();
        return;
    }
    w.showError(QStringLiteral("Choose ") + folderName(QUrl::fromLocalFile(blocked)),
                QStringLiteral("Select the folder that is blocked:\n") + NativePath::display(blocked));
}

} // namespace orvane
