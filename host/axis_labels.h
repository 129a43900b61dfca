// Which of many numbers fit beside an axis.
#pragma once

#include <algorithm>
#include <vector>

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

/// The sensors, counted from 0, whose numbers, counted from 1, are written: the first, then every
/// second, or those with the round numbers of a larger step; labels of `labelPixels` never touch.
/// On a circle the last one has the first as its neighbour.
inline std::vector<int> labelledSensors(int sensors, int axisPixels, int labelPixels,
                                        bool circle = false) {
    std::vector<int> labelled;
    if (sensors < 1) return labelled;
    labelled.push_back(0);
    const int step = labelStep(sensors, axisPixels, labelPixels);
    const auto touch = [&](int distance) {
        return static_cast<double>(distance) * axisPixels <
               static_cast<double>(labelPixels) * sensors;
    };
    for (int number = step <= 2 ? 1 + step : step; number <= sensors; number += step) {
        if (touch(number - 1 - labelled.back())) continue;
        if (circle && touch(sensors - (number - 1))) break;
        labelled.push_back(number - 1);
    }
    return labelled;
}
