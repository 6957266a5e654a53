#!/usr/bin/env bash
# Installs what the release build made, or removes it again: the files of
# `make install` and `make uninstall`, and of the .deb and the tarball, which
# are staged with it.
#   tools/linux/install-files.sh install|uninstall BUILD_DIR
# Where each part goes comes from the environment, all of it below DESTDIR
# (which may be empty): BINDIR, MANDIR, DATADIR (desktop file and icons),
# DOCDIR, LV2_DIR, VST3_DIR, VST2_DIR, CLAP_DIR.
set -euo pipefail
action=$1
build=$2
source_dir=$(cd "$(dirname "$0")/../.." && pwd)
artefacts=$build/Quorlane_artefacts/Release
packaging=$source_dir/packaging/linux
root=${DESTDIR:-}

# One line per part, its fields apart by tabs (paths may hold spaces).
entry() {
    local IFS=$'\t'
    echo "$*"
}

# What goes where: mode, source, target; a folder is installed whole.
files() {
    entry "755" "$artefacts/Standalone/Quorlane" "$BINDIR/quorlane"
    entry "755" "$build/bin/quorlane-render" "$BINDIR/quorlane-render"
    entry "644" "$artefacts/VST/Quorlane.so" "$VST2_DIR/Quorlane.so"
    entry "644" "$artefacts/VST3/Quorlane.vst3" "$VST3_DIR/Quorlane.vst3"
    entry "644" "$artefacts/LV2/Quorlane.lv2" "$LV2_DIR/Quorlane.lv2"
    entry "644" "$artefacts/CLAP/Quorlane.clap" "$CLAP_DIR/Quorlane.clap"
    entry "644" "$packaging/quorlane.1" "$MANDIR/man1/quorlane.1"
    entry "644" "$packaging/quorlane-render.1" "$MANDIR/man1/quorlane-render.1"
    entry "644" "$packaging/quorlane.desktop" "$DATADIR/applications/quorlane.desktop"
    for icon in "$packaging"/icons/quorlane-*.png; do
        size=${icon##*-}; size=${size%.png}
        entry "644" "$icon" "$DATADIR/icons/hicolor/${size}x${size}/apps/quorlane.png"
    done
    entry "644" "$source_dir/README.md" "$DOCDIR/README.md"
    entry "644" "$source_dir/LICENSE" "$DOCDIR/LICENSE"
}

case $action in
install)
    missing=$(files | while IFS=$'\t' read -r _ from _; do [ -e "$from" ] || echo "  $from"; done)
    if [ -n "$missing" ]; then
        echo "Nothing installed: the release build is incomplete. Missing:" >&2
        echo "$missing" >&2
        echo "Build it first as yourself with \`make release\`, then install (\`sudo make install\`)." >&2
        exit 1
    fi
    files | while IFS=$'\t' read -r mode from to; do
        if [ -d "$from" ]; then
            # A bundle is replaced whole, so that nothing of an older one stays.
            rm -rf "$root$to"
            (cd "$from" && find . -type d) | while IFS= read -r folder; do install -d -m 755 "$root$to/$folder"; done
            (cd "$from" && find . -type f) | while IFS= read -r file; do install -m "$mode" "$from/$file" "$root$to/$file"; done
        else
            install -D -m "$mode" "$from" "$root$to"
        fi
    done
    ;;
uninstall)
    files | while IFS=$'\t' read -r _ _ to; do rm -rf "$root$to"; done
    rmdir "$root$DOCDIR" 2>/dev/null || true
    ;;
*)
    echo "usage: $0 install|uninstall BUILD_DIR" >&2
    exit 2
    ;;
esac
