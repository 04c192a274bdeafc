#pragma once

#include <QObject>
#include <QString>

namespace orvane {

// In-process notifications by name, delivered on the main thread, like the platform's default centre.
class NotificationCenter : public QObject {
    Q_OBJECT
public:
    static NotificationCenter& shared();
    void post(const QString& name, const void* sender = nullptr) { emit posted(name, sender); }

signals:
    void posted(const QString& name, const void* sender);
};

} // namespace orvane
