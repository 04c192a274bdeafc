#include "phone/PhoneConnectionWatch.h"

#include "phone/PhoneBridge.h"

#include <QPointer>

namespace orvane {

PhoneConnectionWatch::PhoneConnectionWatch(QObject* parent, std::chrono::milliseconds interval)
    : QObject(parent) {
    timer.setSingleShot(true);
    timer.setInterval(interval);
    connect(&timer, &QTimer::timeout, this, &PhoneConnectionWatch::ask);
}

void PhoneConnectionWatch::start() {
    if (!asking && !timer.isActive()) ask();
}

void PhoneConnectionWatch::ask() {
    asking = true;
    PhoneBridge::scan([self = QPointer(this)](const PhoneReply& reply) {
        if (!self) return;
        self->asking = false;
        self->timer.start();
        const bool now = !reply.error;
        if (now == self->isConnected) return;
        self->isConnected = now;
        emit self->connectedChanged(now);
    });
}

} // namespace orvane
