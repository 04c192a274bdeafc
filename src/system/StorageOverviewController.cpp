#include "system/StorageOverviewController.h"

#include "kit/AuxiliaryStyle.h"
#include "platform/NativePath.h"
#include "platform/VolumeWatch.h"
#include "system/StorageCard.h"
#include "system/StorageEject.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QScrollArea>
#include <QThreadPool>
#include <QVBoxLayout>

namespace orvane {

StorageOverviewController::StorageOverviewController(QWidget* owner) : QWidget(owner, Qt::Window) {
    setObjectName(QStringLiteral("auxiliaryWindow"));
    setStyleSheet(AuxiliaryStyle::styleSheet());
    setAutoFillBackground(true);
    setWindowTitle(QStringLiteral("Storage"));
    resize(610, 520);
    setMinimumHeight(340);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(22, 18, 22, 18);
    column->addWidget(buildHeading());
    column->addWidget(StorageCard::textLabel(
        QStringLiteral("Mounted volumes • APFS volumes may share the same disk space."), 11, false, this));
    state = StorageCard::textLabel(QString(), 12, false, this);
    state->setObjectName(QStringLiteral("storageState"));
    column->addWidget(state);
    auto* scroll = new QScrollArea(this);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    auto* stack = new QWidget(scroll);
    list = new QVBoxLayout(stack);
    list->setContentsMargins(0, 0, 0, 0);
    list->setSpacing(10);
    list->addStretch(1);
    scroll->setWidget(stack);
    column->addWidget(scroll, 1);
    // A closed overview is read again when it is shown.
    connect(&VolumeWatch::shared(), &VolumeWatch::changed, this, [this] {
        if (isVisible()) reload();
    });
}

QWidget* StorageOverviewController::buildHeading() {
    auto* heading = new QWidget(this);
    auto* row = new QHBoxLayout(heading);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(StorageCard::textLabel(QStringLiteral("Storage"), 24, true, heading), 1);
    auto* refresh = new QPushButton(QStringLiteral("Refresh"), heading);
    refresh->setAccessibleName(QStringLiteral("Refresh"));
    connect(refresh, &QPushButton::clicked, this, &StorageOverviewController::reload);
    row->addWidget(refresh);
    auto* close = new QPushButton(QStringLiteral("Close"), heading);
    close->setAccessibleName(QStringLiteral("Close"));
    connect(close, &QPushButton::clicked, this, &QWidget::close);
    row->addWidget(close);
    return heading;
}

// Reads are never cancelled; a late one finds the request moved on and is dropped.
void StorageOverviewController::reload() {
    const quint64 mine = ++request;
    state->setText(QStringLiteral("Reading connected drives…"));
    QPointer<StorageOverviewController> self(this);
    QThreadPool::globalInstance()->start([self, mine] {
        std::vector<StorageVolume> volumes = StorageVolume::read();
        QMetaObject::invokeMethod(QCoreApplication::instance(), [self, mine, volumes = std::move(volumes)] {
            if (self && self->request == mine) self->render(volumes);
        });
    });
}

void StorageOverviewController::render(const std::vector<StorageVolume>& volumes) {
    for (StorageCard* card : cards())
        delete card;
    state->setText(QString::number(volumes.size()) + QStringLiteral(" mounted volumes"));
    for (const StorageVolume& volume : volumes) {
        auto* card = new StorageCard(volume, list->parentWidget());
        connect(card, &StorageCard::openRequested, this, [this](const QUrl& url) {
            if (openVolume) openVolume(url);
        });
        connect(card, &StorageCard::ejectRequested, this, &StorageOverviewController::eject);
        list->insertWidget(list->count() - 1, card);
    }
    emit rendered();
}

void StorageOverviewController::eject(const StorageVolume& volume) {
    for (StorageCard* card : cards())
        if (card->volume().path == volume.path && card->ejectButton()) card->ejectButton()->setEnabled(false);
    QPointer<StorageOverviewController> self(this);
    QThreadPool::globalInstance()->start([self, volume] {
        const QString error = StorageEject::run(volume);
        QMetaObject::invokeMethod(QCoreApplication::instance(), [self, volume, error] {
            if (!self) return;
            // An eject that worked changes the mount table, and the watch redraws the list.
            if (!error.isEmpty() && self->showError)
                self->showError(QStringLiteral("Cannot eject “%1”").arg(NativePath::display(volume.name)),
                                error);
            self->reload();
        });
    });
}

QList<StorageCard*> StorageOverviewController::cards() const {
    return list->parentWidget()->findChildren<StorageCard*>(Qt::FindDirectChildrenOnly);
}

QString StorageOverviewController::stateText() const {
    return state->text();
}

void StorageOverviewController::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        close();
    else
        QWidget::keyPressEvent(event);
}

} // namespace orvane
