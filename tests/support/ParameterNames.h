#pragma once

// The twenty parameters a host sees, in index order.
inline const char* const quorlaneParameterNames[20] = {
    "Early Size", "Early Diffusion", "Early Attenuation", "Early EQ Frequency", "Early EQ Gain",
    "Early EQ Bandwidth", "Late Size", "Late Diffusion", "Late Feedback", "Late Attenuation",
    "Late Bass Cut", "Late EQ Frequency", "Late EQ Gain", "Late EQ Bandwidth", "X Fader",
    "Modulation", "Predelay", "Wet Gain", "FX", "Output Volume"
};
