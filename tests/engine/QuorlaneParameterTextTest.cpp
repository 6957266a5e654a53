#include "engine/QuorlaneParameterText.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

TEST (QuorlaneParameterText, EveryParameterAtBothEndsAndMiddle)
{
    const std::array<std::array<const char*, 3>, 20> expected { {
        { "3.5m", "8.4m", "19.9m" },
        { "0.0%", "50.0%", "100.0%" },
        { "20.0Hz", "1700.0Hz", "16600.0Hz" },
        { "20.0Hz", "2000.0Hz", "22000.0Hz" },
        { "-24.0dB", "0.0dB", "24.0dB" },
        { "4.0Oct.", "2.2Oct.", "0.5Oct." },
        { "7.4m", "23.4m", "74.2m" },
        { "0.0%", "50.0%", "100.0%" },
        { "0.0%", "49.5%", "99.0%" },
        { "20.0Hz", "1700.0Hz", "16600.0Hz" },
        { "0.1Hz", "2230.3Hz", "22010.0Hz" },
        { "20.0Hz", "2000.0Hz", "22000.0Hz" },
        { "-24.0dB", "0.0dB", "24.0dB" },
        { "4.0Oct.", "2.2Oct.", "0.5Oct." },
        { "100/0% (Early/Late)", "50/50% (Early/Late)", "0/100% (Early/Late)" },
        { "0.0%", "50.0%", "100.0%" },
        { "0.0ms (0.0m)", "89.8ms (30.6m)", "300.0ms (102.1m)" },
        { "0.0dB", "8.0dB", "12.0dB" },
        { "100/0% (Dry/Wet)", "50/50% (Dry/Wet)", "0/100% (Dry/Wet)" },
        { "-Inf.", "0.0dB", "+12.0dB" },
    } };

    for (int index = 0; index < 20; ++index)
        for (int i = 0; i < 3; ++i)
            EXPECT_EQ (quorlaneParameterText (index, 0.5f * (float) i), expected[(size_t) index][(size_t) i]) << "index " << index;
}

TEST (QuorlaneParameterText, SplitsRoundToWholePercentAndVolumeSign)
{
    EXPECT_EQ (quorlaneParameterText (14, 0.255f), "75/25% (Early/Late)"); // 0.255f is a hair below 0.255
    EXPECT_EQ (quorlaneParameterText (14, 0.275f), "72/28% (Early/Late)"); // and this one a hair above
    EXPECT_EQ (quorlaneParameterText (18, 0.004f), "100/0% (Dry/Wet)");
    EXPECT_EQ (quorlaneParameterText (19, 0.4f), "-3.9dB");
    EXPECT_EQ (quorlaneParameterText (19, 0.51f), "+0.3dB");
}
