#include "core/Services.h"

#include "core/Jobs.h"

namespace orvane {

Services::Services(QObject* parent) : QObject(parent), jobList(new Jobs(this)) {}

Services::~Services() = default;

} // namespace orvane
