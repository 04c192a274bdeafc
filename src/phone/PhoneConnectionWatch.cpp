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
        // The bridge's own words tell a locked phone, or one set to charge only, from no phone.
        const QString error = reply.error.value_or(QString());
        const QString state = error.startsWith(QLatin1String("The phone is locked"))
                                  ? QStringLiteral("locked")
                              : error.startsWith(QLatin1String("The phone is connected for charging only"))
                                  ? QStringLiteral("charging only")
                                  : QString();
        if (now != self->isPresent || state != self->phoneState) {
            self->isPresent = now || !state.isEmpty();
            self->phoneState = state;
            emit self->presenceChanged(self->isPresent, state);
        }
        if (now == self->isConnected) return;
        self->isConnected = now;
        emit self->connectedChanged(now);
    });
}

} // namespace orvane
