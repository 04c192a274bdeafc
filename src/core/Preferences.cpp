#include "core/Preferences.h"

#include <QCoreApplication>

namespace orvane {

namespace {
bool selfTestMode = false;
}

std::unique_ptr<QSettings> Preferences::standard() {
    return std::make_unique<QSettings>();
}

std::unique_ptr<QSettings> Preferences::pins() {
    if (!selfTestMode) return standard();
    return std::make_unique<QSettings>(QCoreApplication::organizationName(),
                                       QStringLiteral("local.tevrin.quilland.testsession"));
}

bool Preferences::selfTest() {
    return selfTestMode;
}

void Preferences::setSelfTest(bool on) {
    selfTestMode = on;
}

} // namespace orvane
