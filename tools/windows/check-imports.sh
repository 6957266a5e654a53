#!/usr/bin/env bash
# Fails when a Windows binary imports a DLL that a bare Windows 10/11 x64 does
# not have (a MinGW runtime, zlib, ...): lists each binary's imports.
#   tools/windows/check-imports.sh BINARY...
set -uo pipefail
# Part of every Windows 10/11 x64 installation.
allowed=" advapi32.dll comctl32.dll comdlg32.dll crypt32.dll d2d1.dll dwrite.dll dxgi.dll gdi32.dll imm32.dll"
allowed+=" kernel32.dll msvcrt.dll ole32.dll oleaut32.dll opengl32.dll rpcrt4.dll shell32.dll shlwapi.dll"
allowed+=" user32.dll version.dll winhttp.dll wininet.dll winmm.dll ws2_32.dll wsock32.dll "
status=0
for binary in "$@"; do
    imports=$(x86_64-w64-mingw32-objdump -p "$binary" | sed -n 's/^\s*DLL Name: //p' | tr 'A-Z' 'a-z' | sort -u)
    if [ -z "$imports" ]; then
        echo "FAIL $binary: no import table found"
        status=1
        continue
    fi
    for dll in $imports; do
        if [[ "$allowed" != *" $dll "* ]]; then
            echo "FAIL $binary imports $dll, which Windows does not ship"
            status=1
        fi
    done
    echo "$(basename "$binary"): $(echo $imports)"
done
exit $status
