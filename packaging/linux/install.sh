#!/usr/bin/env bash
# Puts Quorlane from this folder where Linux hosts and desktops look for it,
# or takes it away again. Run ./install.sh --help for the choices.
set -euo pipefail

usage() {
    cat <<'TEXT'
Usage: ./install.sh [--system] [--uninstall]

  (nothing)    Install for you alone: the plug-ins into ~/.lv2, ~/.vst3, ~/.vst
               and ~/.clap, the application "quorlane" and the renderer
               "quorlane-render" into ~/.local/bin, and the menu entry, icons,
               manual pages and documents under ~/.local/share.
  --system     Install for every user under /usr/local (lib/lv2, lib/vst3,
               lib/lxvst, lib/clap, bin, share). Run it as root: sudo ./install.sh --system
  --uninstall  Remove what the same command (with or without --system) installed.
  --help       Show this text.
TEXT
}

here=$(cd "$(dirname "$0")" && pwd)
system=false
uninstall=false

for argument in "$@"; do
    case $argument in
    --system) system=true ;;
    --uninstall) uninstall=true ;;
    -h | --help) usage; exit 0 ;;
    *) echo "install.sh: unknown option $argument" >&2; usage >&2; exit 2 ;;
    esac
done

if [ ! -d "$here/lib" ] || [ ! -d "$here/bin" ]; then
    echo "install.sh: $here does not hold the unpacked Quorlane files (lib/, bin/); run the install.sh that came with them" >&2
    exit 1
fi

if $system; then
    if [ "$(id -u)" -ne 0 ]; then
        echo "install.sh: --system writes under /usr/local, which needs root: run  sudo $0 $*" >&2
        exit 1
    fi
    prefix=/usr/local
    lv2=$prefix/lib/lv2 vst3=$prefix/lib/vst3 vst2=$prefix/lib/lxvst clap=$prefix/lib/clap
    bin=$prefix/bin data=$prefix/share
else
    if [ -z "${HOME:-}" ] || [ ! -d "$HOME" ]; then
        echo "install.sh: HOME is not set to an existing folder" >&2
        exit 1
    fi
    lv2=$HOME/.lv2 vst3=$HOME/.vst3 vst2=$HOME/.vst clap=$HOME/.clap
    bin=$HOME/.local/bin data=${XDG_DATA_HOME:-$HOME/.local/share}
fi

# Each folder of this package and where its contents go, apart by a tab (a
# home may have spaces in its name).
destinations() {
    printf '%s\t%s\n' lib/lv2 "$lv2" lib/vst3 "$vst3" lib/lxvst "$vst2" lib/clap "$clap" bin "$bin"
}

# The files under share/, one by one (other programs' files live beside them).
shared_files() {
    (cd "$here/share" && find . -type f | sed 's|^\./||' | sort)
}

if $uninstall; then
    destinations | while IFS=$'\t' read -r from to; do
        [ -d "$here/$from" ] || continue
        for entry in "$here/$from"/*; do
            [ -e "$entry" ] || continue
            rm -rf "${to:?}/$(basename "$entry")"
        done
    done
    shared_files | while IFS= read -r file; do rm -f "$data/$file"; done
    rmdir "$data/doc/quorlane" 2>/dev/null || true
    echo "Removed Quorlane$($system && echo " from /usr/local" || echo " for $(id -un)")."
    exit 0
fi

destinations | while IFS=$'\t' read -r from to; do
    [ -d "$here/$from" ] || continue
    for entry in "$here/$from"/*; do
        [ -e "$entry" ] || continue
        mkdir -p "$to"
        # A bundle is replaced whole, so that nothing of an older one stays.
        rm -rf "${to:?}/$(basename "$entry")"
        cp -R "$entry" "$to/"
    done
done

shared_files | while IFS= read -r file; do
    install -D -m 644 "$here/share/$file" "$data/$file"
done

# A desktop session may not have ~/.local/bin on its PATH: the menu entry
# names the program by its full path (quoted where it holds a space).
if ! $system; then
    program=$bin/quorlane
    case $program in *" "*) program="\"$program\"" ;; esac
    sed -i "s|^Exec=quorlane\$|Exec=$program|" "$data/applications/quorlane.desktop"
fi

echo "Installed Quorlane$($system && echo " for every user" || echo " for $(id -un)"):"
echo "  LV2       $lv2/Quorlane.lv2   (URI urn:orlo:quorlane)"
echo "  VST3      $vst3/Quorlane.vst3"
echo "  VST 2.4   $vst2/Quorlane.so"
echo "  CLAP      $clap/Quorlane.clap"
echo "  App       $bin/quorlane (and in the applications menu)"
echo "  Renderer  $bin/quorlane-render (man quorlane-render)"
case ":$PATH:" in
*":$bin:"*) ;;
*) echo "Note: $bin is not on your PATH; add it, or run the programs by their full path." ;;
esac
echo "Rescan plug-ins in your host (Ardour, Reaper, Bitwig ...) and insert \"Quorlane\" on a stereo track or bus."
