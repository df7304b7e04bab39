# A private Wine desktop on a private display. Sourced by ./marl.
#
# Every program of the prefix shares one Wine desktop with a taskbar and a notification area; the
# prefix's registry asks for that, so that a program started plainly keeps its own output and exit
# code. Only what was started here is ended, by its number.

#
# How Windows programs run on this machine is found once (ensure_wine, tools/setup.sh) and kept in
# build/wine/road:
#   machine   both widths, by Wine as it is installed
#   root      both widths, by Wine in a private root (tools/root.sh)
#   64        64-bit programs only
#   none      none
# Every command of Wine's is started as "${WINE_VIA[@]}" wine PROGRAM.

declare -A WINE_ROADS=([machine]='32 and 64 bits, by the Wine of this machine'
                       [root]='32 and 64 bits, by Wine in a private root'
                       [64]='64 bits alone, by the Wine of this machine')
WINE_NO_32='wine32:i386 cannot be installed; "If something is missing" in README.md has the remedies'
WINE_NONE='Wine cannot be installed; "If something is missing" in README.md has the remedies'
WINE_ROAD=machine
WINE_VIA=()

# wine_take ROAD: from now on.
wine_take() {
  WINE_ROAD=$1 WINE_VIA=()
  if [[ $1 == root ]]; then WINE_VIA=("$ROOT/tools/in_root.sh" "$PRIVATE_ROOT" "$ROOT"); fi
}

wine_version() { "${WINE_VIA[@]}" wine --version 2>/dev/null; }

# wine_remember ROAD: takes it, now and in later runs.
wine_remember() {
  mkdir -p build/wine
  wine_take "$1"
  printf '%s\n' "$1" "$(wine_version || true)" >build/wine/road
}

# wine_remembered KIND: true when the remembered road is still good for that kind of work. A better
# one is tried when all packages are there by now, or when the user asks for it.
wine_remembered() {
  local road version
  { read -r road && read -r version; } 2>/dev/null <build/wine/road || return
  case $road in
    machine) ;;
    *) wine_lacks "${WINE_PACKAGES[@]}" || return ;;
  esac
  case $road in
    none) [[ $1 == test ]] && return ;;
    64) [[ $1 != all ]] || return ;;
    root) private_root_ready || return ;;
  esac
  [[ $version == "$(wine_version)" ]]
}

# cannot_run PART: why the part of the tests with that name cannot run on this machine; nothing when
# it can. The names of Windows parts have win32 or win64 in them.
cannot_run() {
  case $WINE_ROAD:$1 in
    64:*win32*) echo "$WINE_NO_32" ;;
    none:*win32* | none:*win64*) echo "$WINE_NONE" ;;
  esac
}

if [[ -f build/wine/road ]]; then wine_take "$(head -n 1 build/wine/road)"; fi

WINE_BEGUN=
XVFB_PID=

# wine_begin NAME [DPI [SIZE]]: makes the prefix build/wine/NAME ready, with a display of its own,
# of SIZE pixels.
wine_begin() {
  local dpi=${2:-96}
  if [[ -n $WINE_BEGUN || -n ${MARL_WINE_PREFIX:-} ]]; then return; fi
  wine_version >/dev/null || fail "$WINE_NONE"
  export WINEPREFIX=$ROOT/build/wine/$1 WINEDEBUG=-all
  export WINEDLLOVERRIDES='mscoree,mshtml=;winemenubuilder.exe=d'
  export MARL_WINE_PREFIX=$WINEPREFIX
  WINE_BEGUN=$1
  trap wine_end EXIT
  trap 'exit 130' INT
  trap 'exit 143' TERM
  # A finer screen shows as much.
  local size=${3:-$((1024 * dpi / 96))x$((768 * dpi / 96))}
  # A prefix of one road is of no use on another.
  if [[ $(cat "$WINEPREFIX/marl-ready" 2>/dev/null) != "$WINE_ROAD" ]]; then
    rm -rf "$WINEPREFIX"
  fi
  mkdir -p "$WINEPREFIX"
  if [[ -z ${MARL_USE_DISPLAY:-} ]]; then
    display_begin "$size"
  elif [[ $WINE_ROAD == root && -f ${XAUTHORITY:-$HOME/.Xauthority} ]]; then
    install -m 600 "${XAUTHORITY:-$HOME/.Xauthority}" "$WINEPREFIX/display"
    export XAUTHORITY=$WINEPREFIX/display
  fi
  if [[ ! -f $WINEPREFIX/marl-ready ]]; then
    wine_prefix "$size" "$dpi"
    echo "$WINE_ROAD" >"$WINEPREFIX/marl-ready"
  fi
}

# Fills a fresh prefix: no menus and no foreign runtimes, one desktop for all its programs.
wine_prefix() {
  "${WINE_VIA[@]}" wineboot -i >/dev/null 2>&1 || fail "the Wine prefix $WINEPREFIX could not be made"
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
  # shellcheck disable=SC2016
  "${WINE_VIA[@]}" sh -c 'for font in /usr/share/wine/fonts/*; do
      [ ! -f "$font" ] || ln -sf "$font" "$WINEPREFIX/drive_c/windows/Fonts/"
    done'
  "${WINE_VIA[@]}" wine regedit /S 'C:\marl.reg'
  wine_rest
}

# Ends what runs in the prefix, which starts anew with the next program.
wine_rest() {
  "${WINE_VIA[@]}" wineserver -k
  "${WINE_VIA[@]}" wineserver -w
}

# wine_dpi DPI: the resolution from now on.
wine_dpi() {
  "${WINE_VIA[@]}" wine reg add 'HKCU\Control Panel\Desktop' /v LogPixels /t REG_DWORD /d "$1" /f \
    >/dev/null
  wine_rest
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
    "${WINE_VIA[@]}" wineserver -k 2>/dev/null || true
    "${WINE_VIA[@]}" wineserver -w 2>/dev/null || true
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
  if [[ -n ${MARL_WINE_PREFIX:-} ]]; then exec "${WINE_VIA[@]}" wine "$@"; fi
  local name=${MARL_WINE_NAME:-tests}
  wine_begin "$name" "${MARL_WINE_DPI:-96}"
  if [[ $name == desktop* ]]; then
    mkdir -p "out/shots/$name"
    export MARL_SHOTS="Z:$ROOT/out/shots/$name"
  fi
  "${WINE_VIA[@]}" wine "$@"
}
