#!/usr/bin/env bash
# Times the same work in the Linux and the Windows (Wine) builds of the
# renderer, one after the other: a 60-second stereo phrase rendered at each
# quality, on one thread. Prints the seconds each took and their ratio.
#   tools/windows/compare-speed.sh LINUX_RENDER WINDOWS_RENDER_EXE WINEPREFIX
set -euo pipefail
linux=$1
windows=$2
export WINEPREFIX=$3 WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

"$linux" --make-demo-phrase "$work/phrase.wav" > /dev/null
# Twelve copies of the phrase make a minute of input.
python3 - "$work/phrase.wav" "$work/minute.wav" <<'PY'
import sys, wave
with wave.open(sys.argv[1]) as src:
    params, frames = src.getparams(), src.readframes(src.getnframes())
with wave.open(sys.argv[2], "wb") as dst:
    dst.setparams(params)
    dst.writeframes(frames * 12)
PY

wineserver -p
wine cmd /c exit > /dev/null 2>&1

seconds() { local start=$(date +%s%N); "$@" > /dev/null; echo $(( $(date +%s%N) - start )); }

for quality in low highest; do
    for run in 1 2 3; do
        l=$(seconds "$linux" "$work/minute.wav" -o "$work/l.wav" --force --tail 0 -j 1 --quality $quality)
        w=$(seconds wine "$windows" "$(winepath -w "$work/minute.wav")" -o "$(winepath -w "$work/w.wav")" --force --tail 0 -j 1 --quality $quality)
        awk -v q=$quality -v r=$run -v l="$l" -v w="$w" \
            'BEGIN { printf "%-8s run %d: Linux %.2f s, Windows under Wine %.2f s, ratio %.3f\n", q, r, l / 1e9, w / 1e9, w / l }'
    done
done
wineserver -k || true
