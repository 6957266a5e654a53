#!/usr/bin/env bash
# Builds DIST/quorlane_<version>_amd64.deb from the release build with
# Debian's own tools: the files staged as `make install` lays them out under
# /usr, with the plug-ins in the folders Debian's hosts scan, stripped and
# compressed as Debian's helpers would, and the dependencies found by
# dpkg-shlibdeps.
#   tools/linux/make-deb.sh BUILD_DIR DIST_DIR
set -euo pipefail
build=$(cd "$1" && pwd)
mkdir -p "$2"
dist=$(cd "$2" && pwd)
source_dir=$(cd "$(dirname "$0")/../.." && pwd)
version=$(sed -n 's/^project(Quorlane VERSION \([0-9.]*\).*/\1/p' "$source_dir/CMakeLists.txt")
name=quorlane_${version}_amd64
work=$build/deb
staging=$work/$name

rm -rf "$work"
mkdir -p "$staging/DEBIAN"
DESTDIR=$staging BINDIR=/usr/bin MANDIR=/usr/share/man DATADIR=/usr/share DOCDIR=/usr/share/doc/quorlane \
    LV2_DIR=/usr/lib/lv2 VST3_DIR=/usr/lib/vst3 VST2_DIR=/usr/lib/lxvst CLAP_DIR=/usr/lib/clap \
    "$source_dir/tools/linux/install-files.sh" install "$build"

"$source_dir/tools/linux/strip-binaries.sh" "$staging"

# Debian keeps the licence in copyright (the GPL's text is on every system
# already), compresses manual pages and long documents, and wants a changelog.
doc=$staging/usr/share/doc/quorlane
rm "$doc/LICENSE"
install -m 644 "$source_dir/packaging/linux/copyright" "$doc/copyright"
gzip -9n "$doc/README.md" "$staging"/usr/share/man/man1/*.1
date=$(date -R -d "@$(git -C "$source_dir" log -1 --format=%ct 2>/dev/null || date +%s)")
printf 'quorlane (%s) stable; urgency=medium\n\n  * Release %s; see /usr/share/doc/quorlane/README.md.gz.\n\n -- Orlo Digital Audio Works <quorlane@orlo.invalid>  %s\n' \
    "$version" "$version" "$date" | gzip -9n > "$doc/changelog.gz"
chmod 644 "$doc/changelog.gz"

# dpkg-shlibdeps reads the package's name from a source control file.
mkdir -p "$work/debian"
printf 'Source: quorlane\n\nPackage: quorlane\nArchitecture: amd64\n' > "$work/debian/control"
mapfile -t binaries < <(find "$staging/usr" -type f \( -name '*.so' -o -perm -u+x \) | sort)
shlibs=$(cd "$work" && dpkg-shlibdeps -O "${binaries[@]}" | sed -n 's/^shlibs:Depends=//p')
[ -n "$shlibs" ] || { echo "dpkg-shlibdeps found no dependencies" >&2; exit 1; }

# JUCE opens the X11 libraries itself when a window first opens, so no
# binary names them.
x11="libx11-6, libxext6, libxcursor1, libxinerama1, libxrandr2, libxrender1"

cat > "$staging/DEBIAN/control" <<CONTROL
Package: quorlane
Version: $version
Architecture: amd64
Maintainer: Orlo Digital Audio Works <quorlane@orlo.invalid>
Installed-Size: $(du -sk --exclude=DEBIAN "$staging" | cut -f1)
Depends: $shlibs, $x11
Section: sound
Priority: optional
Description: stereo algorithmic reverb (LV2, VST3, VST 2.4 and standalone)
 Quorlane is a stereo reverb for music production: an early-reflections
 stage and a late-reverberation stage, each with size, diffusion,
 attenuation and a peaking equaliser, feed a mixer with an early/late
 cross-fader, modulation, predelay, wet gain, dry/wet balance and output
 volume. It comes with 47 factory presets and room for 81 of your own,
 MIDI control with learn, and a four-step quality setting.
 .
 This package holds the LV2, VST3 and VST 2.4 plug-ins in the folders that
 Linux hosts scan, the standalone application "quorlane", and
 "quorlane-render", which renders audio files through the reverb from the
 command line.
CONTROL

(cd "$staging" && find . -path ./DEBIAN -prune -o -type f -printf '%P\0' | sort -z | xargs -0 md5sum) > "$staging/DEBIAN/md5sums"
chmod 644 "$staging/DEBIAN/control" "$staging/DEBIAN/md5sums"

dpkg-deb --root-owner-group -Zxz --build "$staging" "$dist/$name.deb" >/dev/null
echo "Built $dist/$name.deb"
