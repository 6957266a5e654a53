#pragma once

#include <limits>

// What a broken upstream plug-in or a damaged file can deliver: NaN,
// infinities, numbers near the float limit and subnormals.
inline const float hostileSamples[] = {
    std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(),
    -std::numeric_limits<float>::infinity(), 1e30f, std::numeric_limits<float>::max(),
    std::numeric_limits<float>::denorm_min() * 7.0f,
};
