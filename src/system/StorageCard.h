#pragma once

#include "system/StorageVolume.h"

#include <QFrame>

class QProgressBar;
class QPushButton;

class QLabel;

namespace orvane {

// One volume of the storage overview: its kind, name, a bar of its use and the figures, with Open
// and, for a volume that can go, Eject.
class StorageCard : public QFrame {
    Q_OBJECT
public:
    StorageCard(const StorageVolume& volume, QWidget* parent = nullptr);
    const StorageVolume& volume() const { return shown; }
    QProgressBar* bar() const { return usage; }
    QPushButton* openButton() const { return open; }
    QPushButton* ejectButton() const { return eject; } // null when the volume cannot be ejected

    // The bar's value, 0 to 100, and the line under it.
    static int percentUsed(const StorageVolume& volume);
    static QString figuresText(const StorageVolume& volume);
    // The overview's lines of text: a pixel size, semibold for headings.
    static QLabel* textLabel(const QString& text, int size, bool semibold, QWidget* parent);

signals:
    void openRequested(const QUrl& url);
    void ejectRequested(const StorageVolume& volume);

private:
    QWidget* buildTop();
    StorageVolume shown;
    QProgressBar* usage;
    QPushButton* open;
    QPushButton* eject = nullptr;
};

} // namespace orvane
