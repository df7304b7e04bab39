# A private Wine desktop on a private display. Sourced by ./marl.
#
# Every program of the prefix shares one Wine desktop with a taskbar and a notification area; the
# prefix's registry asks for that, so that a program started plainly keeps its own output and exit
# code. Only what was started here is ended, by its number.

WINE_BEGUN=
XVFB_PID=

# wine_begin NAME [DPI]: makes the prefix build/wine/NAME ready, with a display of its own.
wine_begin() {
  local dpi=${2:-96}
  if [[ -n $WINE_BEGUN || -n ${MARL_WINE_PREFIX:-} ]]; then return; fi
  command -v wine >/dev/null || fail "Wine is not installed; ./marl setup tells why"
  export WINEPREFIX=$ROOT/build/wine/$1 WINEDEBUG=-all
  export WINEDLLOVERRIDES='mscoree,mshtml=;winemenubuilder.exe=d'
  export MARL_WINE_PREFIX=$WINEPREFIX
  WINE_BEGUN=$1
  trap wine_end EXIT
  trap 'exit 130' INT
  trap 'exit 143' TERM
  local size=1024x768
  if ((dpi > 96)); then size=1536x1152; fi
  if [[ -z ${MARL_USE_DISPLAY:-} ]]; then display_begin "$size"; fi
  if [[ ! -f $WINEPREFIX/marl-ready ]]; then
    mkdir -p "$WINEPREFIX"
    wine_prefix "$size" "$dpi"
    touch "$WINEPREFIX/marl-ready"
  fi
}

# Fills a fresh prefix: no menus and no foreign runtimes, one desktop for all its programs.
wine_prefix() {
  wineboot -i >/dev/null 2>&1 || fail "the Wine prefix $WINEPREFIX could not be made"
  cat >"$WINEPREFIX/drive_c/marl.reg" <<EOF
REGEDIT4

[HKEY_CURRENT_USER\\Software\\Wine\\Explorer]
"Desktop"="Default"

[HKEY_CURRENT_USER\\Software\\Wine\\Explorer\\Desktops]
"Default"="$1"

[HKEY_CURRENT_USER\\Control Panel\\Desktop]
"LogPixels"=dword:$(printf %08x "$2")
EOF
  # The fonts of window frames and old dialogs, where this Wine looks for them.
  if [[ -d /usr/share/wine/fonts ]]; then
    ln -sf /usr/share/wine/fonts/* "$WINEPREFIX/drive_c/windows/Fonts/"
  fi
  wine regedit /S 'C:\marl.reg'
  wineserver -k
  wineserver -w
}

# Starts a virtual display with a number that nobody uses and points DISPLAY at it.
display_begin() {
  local answer
  exec {answer}< <(exec Xvfb -displayfd 1 -screen 0 "${1}x24" -nolisten tcp -noreset 2>/dev/null)
  XVFB_PID=$!
  local number=
  read -r -t 20 -u "$answer" number || fail "no virtual display could be started"
  export DISPLAY=:$number
}

wine_end() {
  local status=$?
  trap - EXIT
  if [[ -n $WINE_BEGUN ]]; then
    wineserver -k 2>/dev/null || true
    wineserver -w 2>/dev/null || true
    WINE_BEGUN=
  fi
  if [[ -n $XVFB_PID ]]; then
    kill "$XVFB_PID" 2>/dev/null || true
    XVFB_PID=
  fi
  exit "$status"
}

cmd_wine() {
  [[ $# -gt 0 ]] || fail "wine needs a program"
  if [[ -n ${MARL_WINE_PREFIX:-} ]]; then exec wine "$@"; fi
  local name=${MARL_WINE_NAME:-tests}
  wine_begin "$name" "${MARL_WINE_DPI:-96}"
  if [[ $name == desktop* ]]; then
    mkdir -p "out/shots/$name"
    export MARL_SHOTS="Z:$ROOT/out/shots/$name"
  fi
  wine "$@"
}
