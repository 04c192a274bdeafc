#pragma once

#include <QObject>
#include <QTimer>
#include <chrono>

namespace orvane {

// Asks the bridge every few seconds whether a phone is reachable; there is no event for it. The
// next question goes out a whole interval after the last answer, so a long transfer queued ahead
// delays the watch rather than piling questions behind it.
class PhoneConnectionWatch : public QObject {
    Q_OBJECT

public:
    explicit PhoneConnectionWatch(QObject* parent = nullptr,
                                  std::chrono::milliseconds interval = std::chrono::seconds(8));
    void start();
    bool connected() const { return isConnected; }

signals:
    // Only on a change; the first answer counts as one when it finds a phone.
    void connectedChanged(bool connected);

private:
    void ask();

    QTimer timer;
    bool isConnected = false;
    bool asking = false;
};

} // namespace orvane
