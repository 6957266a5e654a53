#pragma once

#include "SkinLayout.h"

// A level meter's film strip: a column of LED segments in a recessed slot;
// frame n lights the lowest n segments, so frame 0 is silence and the last
// frame full scale.
namespace MeterArt
{
    juce::Image drawStrip (const SkinLayout::Strip&, float scale);
}
