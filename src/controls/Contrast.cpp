#include "controls/Contrast.h"

#include <QColor>

#include <algorithm>
#include <cmath>

namespace {

double Luminance(const QColor& colour) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

}  // namespace

double Contrast(const QColor& one, const QColor& other) {
    const auto [low, high] = std::minmax({Luminance(one), Luminance(other)});
    return (high + 0.05) / (low + 0.05);
}
