#include "bench/shape.h"

#include <sstream>
#include <stdexcept>
#include <vector>

namespace bench {

Shape shapeOf(const std::string& text) {
    std::vector<__int64> extents;
    std::istringstream parts(text);
    for (std::string part; std::getline(parts, part, 'x');)
        extents.push_back(std::stoll(part));
    if (extents.size() == 3) extents.insert(extents.begin(), 0);
    if (extents.size() != 4 || extents[1] != extents[2] || extents[1] < 1 || extents[3] < 1)
        throw std::invalid_argument("no shape: " + text);
    return {static_cast<int>(extents[0]), extents[1], extents[3]};
}

}  // namespace bench
