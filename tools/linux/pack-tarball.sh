#!/usr/bin/env bash
# Packs the release build into DIST/Quorlane-<version>-linux-x64.tar.gz: the
# files laid out as under an installation prefix (bin/, lib/<format>/,
# share/), stripped, with install.sh at the top to put them in place.
#   tools/linux/pack-tarball.sh BUILD_DIR DIST_DIR
set -euo pipefail
build=$(cd "$1" && pwd)
mkdir -p "$2"
dist=$(cd "$2" && pwd)
source_dir=$(cd "$(dirname "$0")/../.." && pwd)
version=$(sed -n 's/^project(Quorlane VERSION \([0-9.]*\).*/\1/p' "$source_dir/CMakeLists.txt")
name=Quorlane-$version-linux-x64
work=$build/tarball
staging=$work/$name

rm -rf "$work"
mkdir -p "$staging"
DESTDIR=$staging BINDIR=/bin MANDIR=/share/man DATADIR=/share DOCDIR=/share/doc/quorlane \
    LV2_DIR=/lib/lv2 VST3_DIR=/lib/vst3 VST2_DIR=/lib/lxvst CLAP_DIR=/lib/clap \
    "$source_dir/tools/linux/install-files.sh" install "$build"
"$source_dir/tools/linux/strip-binaries.sh" "$staging"
install -m 755 "$source_dir/packaging/linux/install.sh" "$staging/install.sh"

# The same bytes from the same build: fixed owner, order and times.
stamp=$(git -C "$source_dir" log -1 --format=%ct 2>/dev/null || date +%s)
rm -f "$dist/$name.tar.gz"
tar -C "$work" --owner=0 --group=0 --numeric-owner --sort=name --mtime="@$stamp" -cf - "$name" | gzip -9n > "$dist/$name.tar.gz"
echo "Packed $dist/$name.tar.gz"
