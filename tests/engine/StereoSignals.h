#pragma once

// Stereo test signals and a renderer that drives the core in host blocks.

#include "engine/QuorlaneCore.h"

#include <algorithm>
#include <memory>
#include <random>
#include <vector>

namespace
{
struct Stereo
{
    std::vector<float> left, right;
};

inline Stereo noise (int samples, unsigned seed = 1)
{
    std::mt19937 random (seed);
    std::uniform_real_distribution<float> dist (-0.5f, 0.5f);
    Stereo s { std::vector<float> ((size_t) samples), std::vector<float> ((size_t) samples) };

    for (int i = 0; i < samples; ++i)
    {
        s.left[(size_t) i] = dist (random);
        s.right[(size_t) i] = dist (random);
    }

    return s;
}

inline Stereo silence (int samples)
{
    return { std::vector<float> ((size_t) samples), std::vector<float> ((size_t) samples) };
}

// Renders the input through the core in host blocks taken in turn from `sizes`.
inline Stereo render (QuorlaneCore& core, const Stereo& input, std::vector<int> sizes = { 512 })
{
    Stereo out { std::vector<float> (input.left.size()), std::vector<float> (input.right.size()) };
    const int total = (int) input.left.size();

    for (int done = 0, turn = 0; done < total; ++turn)
    {
        const int n = std::min (sizes[(size_t) turn % sizes.size()], total - done);
        const float* in[] = { input.left.data() + done, input.right.data() + done };
        float* o[] = { out.left.data() + done, out.right.data() + done };
        core.process (in, o, n);
        done += n;
    }

    return out;
}

inline std::unique_ptr<QuorlaneCore> makeCore (double sampleRate, unsigned quality = 0)
{
    auto core = std::make_unique<QuorlaneCore>();
    core->prepare (sampleRate, 512);
    core->postQuality (quality);
    return core;
}
}

