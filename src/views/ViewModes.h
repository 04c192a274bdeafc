#pragma once

#include <QString>
#include <optional>

namespace orvane {

// The eight ways a window shows its listing, numbered as the view menu lists them (6 is the
// details table), and the ten-step size slider of the status row that walks them.
namespace ViewModes {
constexpr int first = 1;
constexpr int last = 8;
constexpr int initial = 6;
constexpr int sliderSteps = 10;

// "Extra large icons" ... "Content"; empty outside 1 to 8.
QString name(int mode);

struct SliderChoice {
    int mode = initial;
    std::optional<double> extraLargeSize; // set by the three extra-large steps only
};
// Slider positions read from details at the left to the largest icons at the right.
SliderChoice modeForSlider(int position);
int sliderForMode(int mode, double extraLargeSize);
// "Icons · 256 pt" in mode 1, otherwise the mode's name.
QString sliderToolTip(int mode, double extraLargeSize);

// Control and the wheel walk the four icon sizes only, from any mode: a wheel up (delta above 0)
// makes icons larger. Nothing for a delta too small to count.
std::optional<int> wheelMode(int currentMode, double delta);
} // namespace ViewModes

} // namespace orvane
