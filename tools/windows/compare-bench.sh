#!/usr/bin/env bash
# Runs the same benchmarks in the Linux build and in the Windows build under
# Wine, one after the other on this machine, and prints each one's median and
# the Windows build's cost as a ratio to the Linux build's.
#   tools/windows/compare-bench.sh LINUX_BENCH WINDOWS_BENCH_EXE WINDOWS_BUILD_DIR
set -euo pipefail
linux=$1
windows=$2
. "$(dirname "$0")/wine-prefix.sh" "$3"

filter=${QUORLANE_BENCH_FILTER:-'^noise/quality:[0-3]/rate:48000/block:512(/|$)|^hostBlock'}
arguments=(--benchmark_filter="$filter" --benchmark_repetitions=5 --benchmark_report_aggregates_only=true)
work=$(mktemp -d)
trap 'rm -rf "$work"; wineserver -k 2>/dev/null || true' EXIT

wineserver -p
wine cmd /c exit < /dev/null > /dev/null 2>&1

echo "Linux build:"
"$linux" "${arguments[@]}" | tee "$work/linux.txt"
echo "Windows build under Wine:"
wine "$windows" "${arguments[@]}" | tr -d '\r' | tee "$work/windows.txt"

python3 - "$work/linux.txt" "$work/windows.txt" <<'PY'
import re, sys

scale = {"": 1.0, "k": 1e3, "M": 1e6, "m": 1e-3, "u": 1e-6, "n": 1e-9}
units = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1.0}

def medians(path):
    """Median per benchmark: cpu_per_audio_s where there is one, else CPU seconds per iteration."""
    found = {}
    for line in open(path):
        fields = line.split()
        if not fields or not fields[0].endswith("_median"):
            continue
        # Google Benchmark names a set minimum time; the stand-in does not.
        name = re.sub(r"/min_time:[0-9.]+", "", fields[0][: -len("_median")])
        counter = re.search(r"cpu_per_audio_s=([0-9.eE+-]+)([kMmun]?)", line)
        if counter:
            found[name] = float(counter.group(1)) * scale[counter.group(2)]
        else:
            # Google Benchmark prints wall time then CPU time, each with a unit; the
            # stand-in prints CPU time only. The last time on the line is CPU time.
            times = re.findall(r"([0-9.eE+-]+) (ns|us|ms|s)\b", line)
            found[name] = float(times[-1][0]) * units[times[-1][1]]
    return found

linux, windows = medians(sys.argv[1]), medians(sys.argv[2])
print("\n%-42s %14s %14s %7s" % ("benchmark (median)", "Linux", "Windows", "ratio"))
for name in linux:
    if name in windows:
        print("%-42s %14.6g %14.6g %7.2f" % (name, linux[name], windows[name], windows[name] / linux[name]))
PY
