#include "views/ViewModes.h"

#include <QCoreApplication>
#include <algorithm>
#include <array>
#include <cmath>

namespace orvane {

namespace {
// Slider position to mode; the three rightmost steps are mode 1 at growing sizes.
constexpr std::array<int, ViewModes::sliderSteps> sliderModes{6, 5, 8, 7, 4, 3, 2, 1, 1, 1};
constexpr std::array<double, 3> extraLargeSizes{160, 256, 320};
} // namespace

QString ViewModes::name(int mode) {
    switch (mode) {
    case 1:
        return QCoreApplication::translate("ViewModes", "Extra large icons");
    case 2:
        return QCoreApplication::translate("ViewModes", "Large icons");
    case 3:
        return QCoreApplication::translate("ViewModes", "Medium icons");
    case 4:
        return QCoreApplication::translate("ViewModes", "Small icons");
    case 5:
        return QCoreApplication::translate("ViewModes", "List");
    case 6:
        return QCoreApplication::translate("ViewModes", "Details");
    case 7:
        return QCoreApplication::translate("ViewModes", "Tiles");
    case 8:
        return QCoreApplication::translate("ViewModes", "Content");
    }
    return {};
}

ViewModes::SliderChoice ViewModes::modeForSlider(int position) {
    const int step = std::clamp(position, 0, sliderSteps - 1);
    SliderChoice choice{sliderModes[size_t(step)], std::nullopt};
    if (step >= 7) choice.extraLargeSize = extraLargeSizes[size_t(step - 7)];
    return choice;
}

int ViewModes::sliderForMode(int mode, double extraLargeSize) {
    if (mode == 1) return extraLargeSize > 256 ? 9 : extraLargeSize > 160 ? 8 : 7;
    const auto found = std::find(sliderModes.begin(), sliderModes.end(), mode);
    return found == sliderModes.end() ? 0 : int(found - sliderModes.begin());
}

QString ViewModes::sliderToolTip(int mode, double extraLargeSize) {
    if (mode != 1) return name(mode);
    return QCoreApplication::translate("ViewModes", "Icons · %1 pt").arg(std::lround(extraLargeSize));
}

std::optional<int> ViewModes::wheelMode(int currentMode, double delta) {
    if (std::abs(delta) <= 0.01) return std::nullopt;
    const int base = currentMode >= 1 && currentMode <= 4 ? currentMode : 4;
    return std::clamp(delta > 0 ? base - 1 : base + 1, 1, 4);
}

} // namespace orvane
