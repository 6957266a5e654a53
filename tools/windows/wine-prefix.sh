# Sourced by the Windows scripts: Wine in a prefix of the build's own
# (BUILD_DIR/wineprefix), quiet, made once with a display present.
#   . tools/windows/wine-prefix.sh BUILD_DIR
export WINEPREFIX=$(cd "$1" && pwd)/wineprefix
export WINEDEBUG=-all
export WINEARCH=win64
# No Mono or Gecko: nothing here needs .NET or a browser, and Wine would
# otherwise offer to download them.
export WINEDLLOVERRIDES="mscoree,mshtml="

# A prefix made without a display reports no graphics outputs, and JUCE's
# windows then fail to open.
if [ ! -e "$WINEPREFIX/system.reg" ]; then
    xvfb-run -a -s "-screen 0 1280x1024x24" bash -c 'wineboot -i && wineserver -w'
fi
