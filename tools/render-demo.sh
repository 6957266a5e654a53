#!/usr/bin/env bash
# Renders the demo: a synthesised dry phrase through three contrasting
# settings, plus the impulse response and decay plot of the hall.
# Usage: tools/render-demo.sh RENDERER [FOLDER]   (FOLDER defaults to demo)
set -euo pipefail

render=$1
out=${2:-demo}
mkdir -p "$out"

small_room=(--set "Early Size=0.25" --set "Late Size=0.1" --set "Late Diffusion=0.1"
            --set "Late Feedback=0.05" --set "Late Attenuation=0.7" --set "X Fader=0.3" --set "FX=0.3")
large_hall=(--set "Early Size=0.7" --set "Late Size=0.6" --set "Late Feedback=0.35" --set "X Fader=0.7"
            --set "Modulation=0.3" --set "Predelay=0.3" --set "FX=0.4")
dark_long=(--set "Early Attenuation=0.35" --set "Late Size=0.8" --set "Late Feedback=0.6"
           --set "Late Attenuation=0.3" --set "X Fader=0.85" --set "FX=0.5")

"$render" --force --make-demo-phrase "$out/dry.wav"
"$render" --force "$out/dry.wav" -o "$out/small-room.wav" "${small_room[@]}"
"$render" --force "$out/dry.wav" -o "$out/large-hall.wav" "${large_hall[@]}"
"$render" --force "$out/dry.wav" -o "$out/dark-long.wav" "${dark_long[@]}"
"$render" --force "${large_hall[@]}" --set "FX=1" --ir "$out/ir.wav" --plot "$out/decay.png"

echo
echo "Demo in $out/:"
echo "  dry.wav                   the synthesised dry phrase"
echo "  small-room.wav            short and close"
echo "  large-hall.wav            wide, with a little predelay"
echo "  dark-long.wav             long, with the highs damped"
echo "  ir.wav, decay.png         the hall's wet impulse response and its energy decay"
