#!/usr/bin/env bash
# Packs the Windows build into DIST/Quorlane-<version>-windows-x64.zip with a
# note on where each file goes.
#   tools/windows/pack.sh BUILD_DIR DIST_DIR
set -euo pipefail
build=$1
dist=$2
version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "$build/CMakeCache.txt")
name=Quorlane-$version-windows-x64
artefacts=$build/Quorlane_artefacts/Release
staging=$build/package/$name

rm -rf "$build/package"
mkdir -p "$staging/VST2" "$staging/VST3" "$staging/CLAP" "$dist"
cp "$artefacts/VST/Quorlane.dll" "$staging/VST2/"
cp -R "$artefacts/VST3/Quorlane.vst3" "$staging/VST3/"
cp "$artefacts/CLAP/Quorlane.clap" "$staging/CLAP/"
cp "$artefacts/Standalone/Quorlane.exe" "$build/bin/quorlane-render.exe" "$staging/"

# Windows line endings, for Notepad.
sed 's/$/\r/' > "$staging/INSTALL.txt" <<TEXT
Quorlane $version for Windows x64 (Windows 10 or 11, 64-bit)
================================================================

Nothing else needs installing: every file carries its own runtime.

VST2\\Quorlane.dll
    The VST 2.4 plug-in. Copy it into the folder your host scans for VST 2
    plug-ins, for example C:\\Program Files\\VSTPlugins or
    C:\\Program Files\\Steinberg\\VstPlugins (see your host's plug-in settings).

VST3\\Quorlane.vst3
    The VST3 plug-in (a folder). Copy the whole folder into
    C:\\Program Files\\Common Files\\VST3

CLAP\\Quorlane.clap
    The CLAP plug-in. Copy it into
    C:\\Program Files\\Common Files\\CLAP

Quorlane.exe
    The standalone application. Put it anywhere, for example in
    C:\\Program Files\\Quorlane, and start it from there.

quorlane-render.exe
    The command-line renderer: plays audio files through the reverb.
    Put it in a folder on your PATH and run "quorlane-render --help".
    This build reads and writes WAV and AIFF files.

Then rescan plug-ins in your host and insert "Quorlane" on a stereo track
or bus. Settings shared by every instance are kept in
%APPDATA%\\Quorlane\\Quorlane.ini.

The files are not signed: Windows may ask before running them the first time.
TEXT

rm -f "$dist/$name.zip"
dist=$(cd "$dist" && pwd)
(cd "$build/package" && zip -qr -X "$dist/$name.zip" "$name")
echo "Packed $dist/$name.zip"
