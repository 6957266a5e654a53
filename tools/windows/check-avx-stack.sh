#!/usr/bin/env bash
# MinGW GCC does not keep the stack 32-byte aligned, so an aligned 256-bit
# move to or from a stack slot can fault on Windows. Fails when the
# disassembly of a binary holds one (vmovaps, vmovapd, vmovdqa, vmovntps, ...
# with a ymm or zmm register and an %rsp- or %rbp-relative operand).
#   tools/windows/check-avx-stack.sh BINARY...
set -uo pipefail
status=0
wide=0
for binary in "$@"; do
    code=$(x86_64-w64-mingw32-objdump -d --no-show-raw-insn "$binary")
    wide=$((wide + $(grep -c '%ymm' <<< "$code")))
    found=$(grep -E '\svmov(ap[sd]|dqa(32|64)?|nt(ps|pd|dq|dqa))\s' <<< "$code" \
        | grep -E '%[yz]mm' | grep -E '\(%r[sb]p')
    if [ -n "$found" ]; then
        echo "FAIL $binary: aligned 256-bit stack accesses"
        echo "$found" | head -20
        status=1
    else
        echo "$(basename "$binary"): no aligned 256-bit stack accesses"
    fi
done
# The AVX2 kernels must be there to be checked.
if [ "$wide" -eq 0 ]; then
    echo "FAIL: no 256-bit code found at all"
    status=1
fi
exit $status
