#!/bin/sh
# Runs a Windows program. Its registry and its C: drive are a prefix of our own, whoever the user is; the server behind
# all such programs stays for a while after the last, so that a start takes a tenth of a second.
WINEPREFIX=${ZELK_WINEPREFIX:-$(cd "$(dirname "$0")/.." && pwd)/build-windows/wine}
WINEDEBUG=-all
WINEDLLOVERRIDES="mscoree,mshtml="
export WINEPREFIX WINEDEBUG WINEDLLOVERRIDES
wine=/usr/lib/wine/wine64
[ -x "$wine" ] || wine=$(command -v wine64 || command -v wine) || {
    echo "no Wine here" >&2
    exit 127
}
if [ ! -f "$WINEPREFIX/ready" ]; then
    mkdir -p "$WINEPREFIX"
    (
        flock 9
        [ -f "$WINEPREFIX/ready" ] || {
            "$wine" wineboot -i </dev/null >/dev/null 2>&1
            touch "$WINEPREFIX/ready"
        }
    ) 9>"$WINEPREFIX/.making"
fi
[ ! -x /usr/lib/wine/wineserver64 ] || /usr/lib/wine/wineserver64 -p300 </dev/null >/dev/null 2>&1
exec "$wine" "$@"
