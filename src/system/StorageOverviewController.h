#pragma once

#include "system/StorageVolume.h"

#include <QWidget>
#include <functional>

class QLabel;
class QVBoxLayout;

namespace orvane {

class StorageCard;

// The storage window of one browser window: the mounted volumes, read off the main thread and
// redrawn whole, following mounts and unmounts by itself.
class StorageOverviewController : public QWidget {
    Q_OBJECT
public:
    explicit StorageOverviewController(QWidget* owner);

    std::function<void(const QUrl& url)> openVolume;
    std::function<void(const QString& title, const QString& detail)> showError;

    // Starts a read; an older read still running is thrown away when it ends.
    void reload();
    QList<StorageCard*> cards() const;
    QString stateText() const;

signals:
    // The list was drawn from a read.
    void rendered();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void render(const std::vector<StorageVolume>& volumes);
    void eject(const StorageVolume& volume);
    QWidget* buildHeading();

    QVBoxLayout* list;
    QLabel* state;
    quint64 request = 0;
};

} // namespace orvane
