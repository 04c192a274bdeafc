#include "system/StorageCard.h"

#include "core/EntryText.h"
#include "kit/ExplorerCorners.h"
#include "kit/GlassSurfaces.h"
#include "kit/Palette.h"
#include "kit/Symbols.h"
#include "platform/NativePath.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace orvane {

QLabel* StorageCard::textLabel(const QString& text, int size, bool semibold, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    QFont font = label->font();
    font.setPixelSize(size);
    if (semibold) font.setWeight(QFont::DemiBold);
    label->setFont(font);
    return label;
}

int StorageCard::percentUsed(const StorageVolume& v) {
    const std::optional<qint64> used = v.used();
    if (!v.total || *v.total <= 0 || !used) return 0;
    return int(std::min<double>(100.0, double(*used) / double(*v.total) * 100.0));
}

QString StorageCard::figuresText(const StorageVolume& v) {
    if (!v.total || *v.total <= 0 || !v.used() || !v.free)
        return QStringLiteral("Storage information unavailable");
    const QString bullet = QStringLiteral("  •  ");
    return QString::number(percentUsed(v)) + QStringLiteral("% used") + bullet + byteCountText(*v.used()) +
           QStringLiteral(" used") + bullet + byteCountText(*v.free) + QStringLiteral(" free") + bullet +
           byteCountText(*v.total) + QStringLiteral(" total");
}

StorageCard::StorageCard(const StorageVolume& volume, QWidget* parent) : QFrame(parent), shown(volume) {
    setObjectName(QStringLiteral("storageCard"));
    setStyleSheet(QStringLiteral("#storageCard { background: %1; border-radius: %2px; }")
                      .arg(GlassSurfaces::css(GlassSurfaces::fill(QStringLiteral("#storageCard"))))
                      .arg(ExplorerCorners::surface));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(14, 12, 14, 12);
    column->addWidget(buildTop());
    const QString name = NativePath::display(volume.name);
    usage = new QProgressBar(this);
    usage->setRange(0, 100);
    usage->setValue(percentUsed(volume));
    usage->setTextVisible(false);
    usage->setFixedHeight(8);
    const bool known = figuresText(volume) != QLatin1String("Storage information unavailable");
    usage->setAccessibleName(known ? name + QStringLiteral(": ") + QString::number(percentUsed(volume)) +
                                         QStringLiteral(" percent used")
                                   : name + QStringLiteral(": storage information unavailable"));
    column->addWidget(usage);
    QLabel* figures = textLabel(figuresText(volume), 12, false, this);
    figures->setObjectName(QStringLiteral("storageFigures"));
    figures->setAccessibleName(name + QStringLiteral(": ") + figures->text());
    figures->setTextInteractionFlags(Qt::TextSelectableByMouse);
    column->addWidget(figures);
}

QWidget* StorageCard::buildTop() {
    auto* top = new QWidget(this);
    auto* row = new QHBoxLayout(top);
    row->setContentsMargins(0, 0, 0, 0);
    auto* icon = new QLabel(top);
    icon->setPixmap(symbolIcon(shown.symbol(), Palette::accent()).pixmap(26, 26));
    const QString kind = shown.internalDisk ? QStringLiteral("Internal drive")
                         : shown.local      ? QStringLiteral("External drive")
                                            : QStringLiteral("Network volume");
    icon->setAccessibleName(kind);
    row->addWidget(icon);
    const QString name = NativePath::display(shown.name);
    QLabel* title = textLabel(name, 15, true, top);
    title->setObjectName(QStringLiteral("storageName"));
    row->addWidget(title, 1);
    if (shown.ejectable) {
        eject = new QPushButton(QStringLiteral("Eject"), top);
        eject->setAccessibleName(QStringLiteral("Eject ") + name);
        connect(eject, &QPushButton::clicked, this, [this] { emit ejectRequested(shown); });
        row->addWidget(eject);
    }
    open = new QPushButton(QStringLiteral("Open"), top);
    open->setAccessibleName(QStringLiteral("Open ") + name);
    connect(open, &QPushButton::clicked, this, [this] { emit openRequested(shown.url); });
    row->addWidget(open);
    return top;
}

} // namespace orvane
