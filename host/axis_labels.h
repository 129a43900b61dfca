// Which sensors of a crowded axis are labelled.
#pragma once

#include <algorithm>

/// The distance between labelled sensors, 1, 2, 5, 10, 20, ..., at which labels of `labelPixels`
/// do not touch on an axis of `sensors` sensors and `axisPixels`.
inline int labelStep(int sensors, int axisPixels, int labelPixels) {
    if (sensors < 1 || axisPixels < 1) return std::max(sensors, 1);
    const double perSensor = static_cast<double>(axisPixels) / sensors;
    for (int decade = 1;; decade *= 10) {
        for (const int step : {decade, 2 * decade, 5 * decade}) {
            if (step * perSensor >= labelPixels || step >= sensors) return step;
        }
    }
}
