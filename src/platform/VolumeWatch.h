#pragma once

#include <QObject>
#include <QTimer>

namespace orvane {

// Tells when a volume is mounted or unmounted, so what shows the volumes follows without a restart.
// Bursts of changes arrive as one signal.
class VolumeWatch : public QObject {
    Q_OBJECT
public:
    static VolumeWatch& shared();

signals:
    void changed();

private:
    VolumeWatch();
    ~VolumeWatch() override;
    void noticed() { settle.start(); }

    QTimer settle;
    int handle = -1;
};

} // namespace orvane
