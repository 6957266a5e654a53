#!/usr/bin/env bash
# Tries every Linux install route as a user or packager would and checks that
# hosts find what each one put in place:
#   - `make install` / `make uninstall` into a staging folder;
#   - the .deb: lintian, `apt-get install ./…deb`, lilv, the VST2, VST3 and
#     CLAP test hosts, JUCE's LV2 host, the programs in /usr/bin, the manual page, and
#     `apt-get purge`;
#   - the tarball: which libraries its binaries need, install.sh for a user
#     (a scratch home) and for the system (/usr/local), with the same hosts.
# Installs system-wide, so it runs as root (or with sudo), and refuses to
# start where Quorlane is installed already. Ends with one line
# "package-test: N passed, N failed".
#   tools/linux/package-test.sh RELEASE_DIR DEBUG_DIR DIST_DIR
set -uo pipefail
release=$(cd "$1" && pwd)
debug=$(cd "$2" && pwd)
dist=$(cd "$3" && pwd)
source_dir=$(cd "$(dirname "$0")/../.." && pwd)
version=$(sed -n 's/^project(Quorlane VERSION \([0-9.]*\).*/\1/p' "$source_dir/CMakeLists.txt")
deb=$dist/quorlane_${version}_amd64.deb
tarball=$dist/Quorlane-$version-linux-x64.tar.gz
scratch=$(mktemp -d /tmp/quorlane-package-test.XXXXXX)
sudo=""
[ "$(id -u)" -eq 0 ] || sudo=sudo
passed=0
failed=0

# Each check runs in a subshell that stops at its first failing command, with
# its output kept apart; a failure shows it.
check() {
    local name=$1 status
    shift
    # Not on the left of || or in an if: bash would ignore set -e there.
    (set -e; "$@") > "$scratch/check.log" 2>&1
    status=$?
    if [ $status -eq 0 ]; then
        passed=$((passed + 1))
        echo "ok      $name"
    else
        failed=$((failed + 1))
        echo "FAILED  $name"
        sed 's/^/        /' "$scratch/check.log" | tail -40
    fi
}

cleanup() {
    if dpkg-query -W -f='${Status}' quorlane 2>/dev/null | grep -q "ok installed"; then
        DEBIAN_FRONTEND=noninteractive $sudo apt-get purge -y -qq quorlane >/dev/null 2>&1
    fi
    [ ! -e /usr/local/lib/lv2/Quorlane.lv2 ] || $sudo "$scratch/unpacked/install.sh" --system --uninstall >/dev/null 2>&1
    remove_new_folders
    rm -rf "$scratch"
}
trap cleanup EXIT

# Uninstalling leaves shared folders such as /usr/local/lib/lv2 in place; the
# test takes away those that were not there before it, once they are empty.
usr_local_folders() {
    find /usr/local/bin /usr/local/lib /usr/local/share -xdev -type d 2>/dev/null | sort
}

remove_new_folders() {
    [ -f "$scratch/usr-local-folders.txt" ] || return 0
    comm -13 "$scratch/usr-local-folders.txt" <(usr_local_folders) | sort -r | while read -r folder; do
        $sudo rmdir "$folder" 2>/dev/null
    done
}

# The hosts of the test suites, run one test per process as ctest does, on a
# virtual display, against the plug-in the environment names.
#   host_tests SUITE FILTER VARIABLE=PATH
host_tests() {
    local suite=$debug/tests/$1 filter=$2 setting=$3
    local tests test count=0
    tests=$(xvfb-run -a "$suite" --gtest_list_tests --gtest_filter="$filter" | awk '/^[^ ]/ { group = $1 } /^  / { print group $1 }')
    [ -n "$tests" ] || { echo "$1 has no tests matching $filter"; return 1; }
    for test in $tests; do
        env "$setting" HOME="$scratch/host-home" xvfb-run -a -s "-screen 0 1280x1024x24" \
            "$suite" --gtest_filter="$test" > "$scratch/host.log" 2>&1 || { cat "$scratch/host.log"; return 1; }
        count=$((count + 1))
    done
    echo "$count tests of $1 passed with $setting"
}

vst2_host() { host_tests quorlane_vst2_abi_tests '*' "QUORLANE_VST2_PLUGIN=$1"; }
vst3_host() { host_tests quorlane_host_tests '*VST3*' "QUORLANE_VST3_PLUGIN=$1"; }
clap_host() { host_tests quorlane_clap_host_tests '*' "QUORLANE_CLAP_PLUGIN=$1"; }
lv2_host() { host_tests quorlane_host_tests '*LV2*' "QUORLANE_LV2_FOLDER=$1"; }

# Ardour 7, headless, with no plug-in path set: each format where the route
# put it, found where Ardour looks by default, played, automated and saved
# (the DAW test's own checks). Ardour's scanner indexes the VST2 and VST3
# files, as its start-up scan of its default folders does.
#   ardour_finds_it LIB_FOLDER
ardour_finds_it() {
    QUORLANE_DAW_INSTALLED=$1 HOME="$scratch/host-home" xvfb-run -a -s "-screen 0 1280x1024x24" \
        "$debug/tests/quorlane_daw_tests" --gtest_filter='Installed/*' > "$scratch/ardour.log" 2>&1 || { cat "$scratch/ardour.log"; return 1; }
    grep -q '^\[  PASSED  \] 3 tests' "$scratch/ardour.log" || { cat "$scratch/ardour.log"; return 1; }
}

# lilv, as LV2 hosts use it, lists the URI (HOME empty: ~/.lv2 does not count).
lv2_listed() {
    mkdir -p "$scratch/empty-home"
    HOME=$scratch/empty-home "$@" lv2ls | tee "$scratch/lv2ls.txt"
    grep -qx "urn:orlo:quorlane" "$scratch/lv2ls.txt"
}

# The renderer from where it was installed: its help, and a short render
# through a factory preset into FLAC (its codecs are linked in).
renders() {
    local renderer=$1 work=$scratch/render
    rm -rf "$work" && mkdir -p "$work"
    "$renderer" --help > "$work/help.txt"
    grep -q "Usage: quorlane-render" "$work/help.txt"
    "$renderer" --make-demo-phrase "$work/dry.wav"
    "$renderer" --preset "Concert hall" "$work/dry.wav" -o "$work/wet.flac" --tail 1
    [ -s "$work/wet.flac" ] && [ "$(head -c 4 "$work/wet.flac")" = fLaC ]
}

# The application starts on a display and keeps running until stopped.
app_starts() {
    local status=0
    mkdir -p "$scratch/app-home"
    HOME=$scratch/app-home xvfb-run -a -s "-screen 0 1280x1024x24" timeout 5 "$1" || status=$?
    [ $status -eq 124 ] || { echo "$1 ended with status $status before it was stopped"; return 1; }
}

#-------------------------------------------------------------------------------
# make install / make uninstall

# Every file `make install` puts below DESTDIR, with its mode, for a prefix.
expected_install() {
    local p=$1
    cat <<LIST | sort
755 $p/bin/quorlane
755 $p/bin/quorlane-render
644 $p/lib/lxvst/Quorlane.so
644 $p/lib/clap/Quorlane.clap
644 $p/lib/vst3/Quorlane.vst3/Contents/x86_64-linux/Quorlane.so
644 $p/lib/lv2/Quorlane.lv2/libQuorlane.so
644 $p/lib/lv2/Quorlane.lv2/dsp.ttl
644 $p/lib/lv2/Quorlane.lv2/manifest.ttl
644 $p/lib/lv2/Quorlane.lv2/ui.ttl
644 $p/share/man/man1/quorlane.1
644 $p/share/man/man1/quorlane-render.1
644 $p/share/applications/quorlane.desktop
644 $p/share/icons/hicolor/16x16/apps/quorlane.png
644 $p/share/icons/hicolor/22x22/apps/quorlane.png
644 $p/share/icons/hicolor/24x24/apps/quorlane.png
644 $p/share/icons/hicolor/32x32/apps/quorlane.png
644 $p/share/icons/hicolor/48x48/apps/quorlane.png
644 $p/share/icons/hicolor/64x64/apps/quorlane.png
644 $p/share/icons/hicolor/128x128/apps/quorlane.png
644 $p/share/icons/hicolor/256x256/apps/quorlane.png
644 $p/share/doc/quorlane/LICENSE
644 $p/share/doc/quorlane/README.md
LIST
}

# Files with their modes, and folders that are not 755, below a root.
installed_files() {
    (cd "$1" && find . -type f -printf '%m /%P\n' && find . -type d ! -perm 755 -printf 'folder %m /%P\n') | sort
}

install_puts_exactly_the_files() {
    local root=$scratch/destdir
    make -C "$source_dir" --no-print-directory install RELEASE_DIR="$release" DESTDIR="$root"
    diff <(expected_install /usr/local) <(installed_files "$root")
    make -C "$source_dir" --no-print-directory uninstall RELEASE_DIR="$release" DESTDIR="$root"
    [ -z "$(find "$root" -type f)" ] || { echo "left after make uninstall:"; find "$root" -type f; return 1; }

    # PREFIX moves everything; a format's folder moves on its own.
    rm -rf "$root"
    make -C "$source_dir" --no-print-directory install RELEASE_DIR="$release" DESTDIR="$root" PREFIX=/opt/quorlane VST2_DIR=/opt/vst
    diff <(expected_install /opt/quorlane | sed 's|/opt/quorlane/lib/lxvst/|/opt/vst/|' | sort) <(installed_files "$root")
}

install_builds_nothing_and_says_so() {
    local output
    mkdir -p "$scratch/not-built"
    if output=$(make -C "$source_dir" --no-print-directory install RELEASE_DIR="$scratch/not-built" DESTDIR="$scratch/nothing" 2>&1); then
        echo "make install succeeded without a release build"; return 1
    fi
    echo "$output"
    grep -q "make release" <<< "$output"
    [ ! -e "$scratch/nothing" ] || { echo "make install wrote files without a release build"; return 1; }
    [ -z "$(ls -A "$scratch/not-built")" ] || { echo "make install started a build"; return 1; }
}

#-------------------------------------------------------------------------------
# The .deb

lintian_has_no_errors() {
    lintian --tag-display-limit 0 --display-info "$deb" | tee "$scratch/lintian.txt"
    if grep -q '^E:' "$scratch/lintian.txt"; then
        return 1
    fi
    # Every warning that stays is explained for packagers.
    local tag missing=0
    for tag in $(sed -n 's/^W: [^ ]* [^ ]*: \([^ ]*\).*/\1/p' "$scratch/lintian.txt" | sort -u); do
        grep -q "\`$tag\`" "$source_dir/docs/packaging.md" || { echo "warning $tag is not explained in docs/packaging.md"; missing=1; }
    done
    return $missing
}

deb_installs_with_apt() {
    DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq "$deb"
    [ "$(dpkg-query -W -f='${Status} ${Version}' quorlane)" = "install ok installed $version" ]
    # What the package holds is on disk.
    dpkg-deb -c "$deb" | awk '$1 !~ /^d/ { sub(/^\./, "", $6); print $6 }' > "$scratch/deb-files.txt"
    while read -r file; do [ -f "$file" ] || { echo "missing: $file"; return 1; }; done < "$scratch/deb-files.txt"
}

deb_manual_page_shows() {
    MANPAGER=cat man quorlane-render > "$scratch/man.txt"
    head -5 "$scratch/man.txt"
    grep -q "render audio files through the Quorlane reverb" "$scratch/man.txt"
    grep -q "EXIT STATUS" "$scratch/man.txt"
}

deb_purge_leaves_nothing() {
    DEBIAN_FRONTEND=noninteractive $sudo apt-get purge -y -qq quorlane
    local left=0
    while read -r file; do [ ! -e "$file" ] || { echo "left: $file"; left=1; }; done < "$scratch/deb-files.txt"
    for bundle in /usr/lib/lv2/Quorlane.lv2 /usr/lib/vst3/Quorlane.vst3 /usr/share/doc/quorlane; do
        [ ! -e "$bundle" ] || { echo "left: $bundle"; left=1; }
    done
    return $left
}

#-------------------------------------------------------------------------------
# The tarball

# Libraries that glibc provides, and those that every Linux desktop has with
# these names: X11 for windows (the X libraries JUCE opens itself appear in
# no list), ALSA for MIDI and audio, FreeType for text, libpng and zlib for
# the panel's images.
allowed_library() {
    case $1 in
    libc.so.6 | libm.so.6 | libdl.so.2 | libpthread.so.0 | librt.so.1 | ld-linux-x86-64.so.2) return 0 ;;
    libX11.so.6 | libasound.so.2 | libfreetype.so.6 | libpng16.so.16 | libz.so.1) return 0 ;;
    *) return 1 ;;
    esac
}

tarball_binaries() {
    find "$scratch/unpacked" -type f \( -name '*.so' -o -name '*.clap' -o -perm -u+x \) ! -name install.sh | sort
}

tarball_needs_only_glibc_and_the_desktop() {
    local binary library bad=0
    [ "$(tarball_binaries | wc -l)" -eq 6 ] || { echo "expected 6 binaries in the tarball:"; tarball_binaries; return 1; }
    while read -r binary; do
        for library in $(objdump -p "$binary" | awk '$1 == "NEEDED" { print $2 }'); do
            allowed_library "$library" || { echo "${binary#$scratch/unpacked/} needs $library"; bad=1; }
        done
        # The C++ runtime linked in stays inside: nothing of it is exported.
        if nm -D --defined-only "$binary" | awk '$3 ~ /^(_ZNS|_ZSt|_ZNKS|__cxa_|__gxx_)/ { found = 1 } END { exit !found }'; then
            echo "${binary#$scratch/unpacked/} exports C++ runtime symbols"; bad=1
        fi
    done < <(tarball_binaries)
    return $bad
}

# The README names the oldest glibc the binaries run on: the newest symbol
# version any of them asks for.
readme_states_the_oldest_glibc() {
    local newest
    newest=$(tarball_binaries | xargs objdump -T | grep -o 'GLIBC_[0-9.]*' | sed 's/GLIBC_//' | sort -uV | tail -1)
    echo "newest glibc symbol version needed: $newest"
    grep -q "glibc $newest or newer" "$source_dir/README.md"
}

tarball_installs_for_a_user() {
    local home=$scratch/home
    mkdir -p "$home"
    HOME=$home PATH=/usr/bin:/bin "$scratch/unpacked/install.sh"
    for file in .lv2/Quorlane.lv2/manifest.ttl .vst3/Quorlane.vst3/Contents/x86_64-linux/Quorlane.so .vst/Quorlane.so \
                .clap/Quorlane.clap .local/bin/quorlane .local/bin/quorlane-render .local/share/man/man1/quorlane-render.1 \
                .local/share/applications/quorlane.desktop .local/share/icons/hicolor/48x48/apps/quorlane.png; do
        [ -f "$home/$file" ] || { echo "missing: ~/$file"; return 1; }
    done
    grep -qx "Exec=$home/.local/bin/quorlane" "$home/.local/share/applications/quorlane.desktop"
}

tarball_uninstalls_for_a_user() {
    HOME=$scratch/home "$scratch/unpacked/install.sh" --uninstall
    [ -z "$(find "$scratch/home" -type f)" ] || { echo "left:"; find "$scratch/home" -type f; return 1; }
}

tarball_installs_for_the_system() {
    $sudo "$scratch/unpacked/install.sh" --system
    for file in lib/lv2/Quorlane.lv2/manifest.ttl lib/vst3/Quorlane.vst3/Contents/x86_64-linux/Quorlane.so lib/lxvst/Quorlane.so \
                lib/clap/Quorlane.clap bin/quorlane bin/quorlane-render share/man/man1/quorlane-render.1 share/applications/quorlane.desktop; do
        [ -f "/usr/local/$file" ] || { echo "missing: /usr/local/$file"; return 1; }
    done
}

tarball_uninstalls_for_the_system() {
    $sudo "$scratch/unpacked/install.sh" --system --uninstall
    local left=0
    while read -r file; do
        [ ! -e "/usr/local/${file#$scratch/unpacked/}" ] || { echo "left: /usr/local/${file#$scratch/unpacked/}"; left=1; }
    done < <(find "$scratch/unpacked/lib" "$scratch/unpacked/bin" "$scratch/unpacked/share" -type f)
    return $left
}

#-------------------------------------------------------------------------------
started=$(date +%s)

if dpkg-query -W -f='${Status}' quorlane 2>/dev/null | grep -q "ok installed"; then
    echo "package-test: the quorlane package is installed on this machine; remove it first (apt-get remove quorlane)" >&2
    exit 1
fi
for existing in /usr/local/lib/lv2/Quorlane.lv2 /usr/local/lib/vst3/Quorlane.vst3 /usr/local/lib/lxvst/Quorlane.so /usr/local/lib/clap/Quorlane.clap \
    /usr/local/bin/quorlane-render; do
    if [ -e "$existing" ]; then
        echo "package-test: $existing exists (Quorlane installed under /usr/local); remove it first (sudo make uninstall)" >&2
        exit 1
    fi
done

mkdir -p "$scratch/host-home"
usr_local_folders > "$scratch/usr-local-folders.txt"
check "make install DESTDIR=… puts exactly the expected files, modes and folders; make uninstall removes them" install_puts_exactly_the_files
check "make install without a release build builds nothing, installs nothing and says what to run" install_builds_nothing_and_says_so

check "lintian: no errors, and every warning explained in docs/packaging.md" lintian_has_no_errors
check "apt-get install ./$(basename "$deb")" deb_installs_with_apt
check "lilv lists urn:orlo:quorlane from /usr/lib/lv2" lv2_listed
check "VST2 test host loads /usr/lib/lxvst/Quorlane.so" vst2_host /usr/lib/lxvst/Quorlane.so
check "VST3 test host loads /usr/lib/vst3/Quorlane.vst3" vst3_host /usr/lib/vst3/Quorlane.vst3
check "CLAP test host loads /usr/lib/clap/Quorlane.clap" clap_host /usr/lib/clap/Quorlane.clap
check "JUCE's LV2 host loads Quorlane from /usr/lib/lv2" lv2_host /usr/lib/lv2
check "Ardour finds and plays the VST2, VST3 and LV2 in /usr/lib without a path of ours" ardour_finds_it /usr/lib
check "/usr/bin/quorlane-render: --help and a short render" renders /usr/bin/quorlane-render
check "/usr/bin/quorlane starts" app_starts /usr/bin/quorlane
check "man quorlane-render shows the page" deb_manual_page_shows
check "apt-get purge quorlane leaves none of its files" deb_purge_leaves_nothing

mkdir -p "$scratch/unpacked"
tar -xzf "$tarball" -C "$scratch/unpacked" --strip-components=1
check "tarball: its binaries need only glibc and the desktop's libraries, and export no C++ runtime" tarball_needs_only_glibc_and_the_desktop
check "README states the oldest glibc the tarball's binaries need" readme_states_the_oldest_glibc
check "install.sh for a user installs into a scratch home" tarball_installs_for_a_user
check "lilv lists urn:orlo:quorlane from ~/.lv2" lv2_listed env LV2_PATH="$scratch/home/.lv2"
check "VST2 test host loads ~/.vst/Quorlane.so" vst2_host "$scratch/home/.vst/Quorlane.so"
check "VST3 test host loads ~/.vst3/Quorlane.vst3" vst3_host "$scratch/home/.vst3/Quorlane.vst3"
check "CLAP test host loads ~/.clap/Quorlane.clap" clap_host "$scratch/home/.clap/Quorlane.clap"
check "JUCE's LV2 host loads Quorlane from ~/.lv2" lv2_host "$scratch/home/.lv2"
check "~/.local/bin/quorlane-render: --help and a short render" renders "$scratch/home/.local/bin/quorlane-render"
check "install.sh --uninstall leaves no file in the home" tarball_uninstalls_for_a_user
check "install.sh --system installs under /usr/local" tarball_installs_for_the_system
check "lilv lists urn:orlo:quorlane from /usr/local/lib/lv2" lv2_listed
check "VST2 test host loads /usr/local/lib/lxvst/Quorlane.so" vst2_host /usr/local/lib/lxvst/Quorlane.so
check "VST3 test host loads /usr/local/lib/vst3/Quorlane.vst3" vst3_host /usr/local/lib/vst3/Quorlane.vst3
check "CLAP test host loads /usr/local/lib/clap/Quorlane.clap" clap_host /usr/local/lib/clap/Quorlane.clap
check "Ardour finds and plays the VST2, VST3 and LV2 in /usr/local/lib without a path of ours" ardour_finds_it /usr/local/lib
check "/usr/local/bin/quorlane starts" app_starts /usr/local/bin/quorlane
check "install.sh --system --uninstall leaves none of its files" tarball_uninstalls_for_the_system
remove_new_folders

echo "package-test took $(( $(date +%s) - started )) s"
echo "package-test: $passed passed, $failed failed"
[ "$failed" -eq 0 ]
