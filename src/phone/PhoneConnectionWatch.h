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
    // A phone on the cable that can't be read yet: "locked" or "charging only"; empty otherwise.
    QString state() const { return phoneState; }

signals:
    // Only on a change; the first answer counts as one when it finds a phone.
    void connectedChanged(bool connected);
    // Whether a phone is on the cable at all, readable or not, and its state: on every change.
    void presenceChanged(bool present, const QString& state);

private:
    void ask();

    QTimer timer;
    bool isConnected = false;
    bool isPresent = false;
    QString phoneState;
    bool asking = false;
};

} // namespace orvane
