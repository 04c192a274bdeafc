#include "phone/PhonePlaceholder.h"

#include "browsing/DetailsPane.h"
#include "browsing/EditablePathBox.h"
#include "browsing/Explorer.h"
#include "browsing/ExplorerEvents.h"
#include "browsing/WindowListing.h"

#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

namespace orvane {

PhonePlaceholder::PhonePlaceholder(Explorer& window) : QObject(&window), w(window) {}

void PhonePlaceholder::reload() {
    const ExplorerWidgets& ui = w.widgets();
    w.listing().clear();
    ui.emptyLabel->hide();
    ui.detailsPane->hide();
    ui.action("send")->show();
    ui.action("save")->show();
    ui.pathBox->showPathBar();
    ui.pathBox->setElements({QStringLiteral("Android USB")});
    ui.searchField->setPlaceholderText(QStringLiteral("Search phone"));
    w.setWindowTitle(QStringLiteral("Android USB — Orvane"));
    ui.status->setText(QStringLiteral("Android USB"));
    emit w.events().listingChanged();
}

void PhonePlaceholder::leave() {
    w.widgets().action("send")->hide();
    w.widgets().action("save")->hide();
}

QUrl PhonePlaceholder::parent(const QUrl&) const {
    return {};
}

} // namespace orvane
