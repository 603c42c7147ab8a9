# Sourced by the scripts that run Windows programs. One Xvfb and one fresh WINEPREFIX per session,
# with Wine's virtual desktop (which paints the wallpaper and holds the tray) as the default desktop.
# wine_session_stop stops only what wine_session_start started.

wine_session_start() {
    TL_SESSION_DIR=$(mktemp -d /tmp/tessaline-wine.XXXXXX)
    export WINEPREFIX="$TL_SESSION_DIR/prefix"
    export WINEARCH=win64
    export WINEDEBUG="${WINEDEBUG:--all}"
    # No Mono or Gecko installer prompts in a fresh prefix.
    export WINEDLLOVERRIDES="mscoree,mshtml="
    # Wine takes the Windows locale, and with it the ANSI code page, from the Unix one. C.UTF-8 gives
    # English with code page 1252, which lacks the Cyrillic, Greek, CJK and emoji names the tests use (so
    # that a name passed through an A function would show), and UTF-8 names on the Unix side, which hold
    # every name. Stated here so that a machine's own locale can't change either.
    export LC_ALL=C.UTF-8
    TL_XVFB_PID=""
    if [ "${1:-}" != "--use-display" ]; then
        local n
        for n in $(seq 91 250); do
            if [ ! -e "/tmp/.X11-unix/X$n" ] && [ ! -e "/tmp/.X$n-lock" ]; then
                break
            fi
        done
        Xvfb ":$n" -screen 0 1024x768x24 -nolisten tcp >"$TL_SESSION_DIR/xvfb.log" 2>&1 &
        TL_XVFB_PID=$!
        export DISPLAY=":$n"
        local i
        for i in $(seq 1 100); do
            [ -e "/tmp/.X11-unix/X$n" ] && break
            sleep 0.1
        done
    fi
    wineboot -i >"$TL_SESSION_DIR/wineboot.log" 2>&1
    wine reg add 'HKCU\Software\Wine\Explorer' /v Desktop /d Tessaline /f >/dev/null 2>&1
    wine reg add 'HKCU\Software\Wine\Explorer\Desktops' /v Tessaline /d 1024x768 /f >/dev/null 2>&1
}

wine_session_stop() {
    if [ -n "${WINEPREFIX:-}" ] && [ -d "$WINEPREFIX" ]; then
        wineserver -k >/dev/null 2>&1 || true
        wineserver -w >/dev/null 2>&1 || true
    fi
    if [ -n "${TL_XVFB_PID:-}" ]; then
        kill "$TL_XVFB_PID" 2>/dev/null || true
        wait "$TL_XVFB_PID" 2>/dev/null || true
    fi
    if [ -n "${TL_SESSION_DIR:-}" ]; then
        rm -rf "$TL_SESSION_DIR"
    fi
}

# A Linux path as the Windows programs see it (Wine maps / to Z:).
windows_path() {
    local p
    p=$(cd "$(dirname "$1")" && pwd)/$(basename "$1")
    echo "Z:${p//\//\\}"
}
