#pragma once

#include <QObject>

namespace orvane {

class Jobs;

// The process-wide objects every window shares, owned by the application object and reached as
// `window.services()`. A new process-wide object is added here and nowhere else.
class Services : public QObject {
    Q_OBJECT
public:
    explicit Services(QObject* parent = nullptr);
    ~Services() override;

    Jobs& jobs() const { return *jobList; }

private:
    Jobs* jobList;
};

} // namespace orvane
