# A private Wine desktop on a private display. Sourced by ./marl.
#
# All programs of a prefix share one Wine desktop with a taskbar and a notification area. The
# prefix's registry sets this up, so that programs can be started directly, with their own output
# and exit code. Only processes that were started here are ended, by their id.

#
# How Windows programs run on this machine is determined once (ensure_wine, tools/setup.sh) and
# stored in build/wine/mode:
#   machine   both widths, by Wine as it is installed
#   root      both widths, by Wine in a private root (tools/root.sh)
#   64        64-bit programs only
#   none      none
# MARL_WITNESS=1 selects another one, which is not stored: the newer Wine of ./marl witness. Its
# prefixes are in build/witness.
#
# Every Wine command is started as "${WINE_VIA[@]}" wine PROGRAM.

declare -A WINE_MODES=([machine]='32 and 64 bits, by the Wine of this machine'
                       [root]='32 and 64 bits, by Wine in a private root'
                       [witness]='32 and 64 bits, by the newer Wine in a root of its own'
                       [64]='64 bits alone, by the Wine of this machine')
WINE_NO_32='wine32:i386 cannot be installed; "If something is missing" in docs/BUILDING.md has the remedies'
WINE_NONE='Wine cannot be installed; "If something is missing" in docs/BUILDING.md has the remedies'
WINE_MODE=machine
WINE_VIA=()
# Where the prefixes are.
WINE_FOLDER=build/wine
SHOTS_FOLDER=out/shots

# wine_use MODE: uses it from now on.
wine_use() {
  WINE_MODE=$1 WINE_VIA=()
  case $1 in
    root) WINE_VIA=("$ROOT/tools/in_root.sh" "$PRIVATE_ROOT" "$ROOT") ;;
    witness)
      WINE_VIA=("$ROOT/tools/in_root.sh" "$WITNESS_ROOT" "$ROOT")
      WINE_NONE='the newer Wine is not there yet for this checkout; ./marl witness makes it'
      WINE_FOLDER=build/witness
      SHOTS_FOLDER=out/witness
      ;;
  esac
}

wine_version() { "${WINE_VIA[@]}" wine --version 2>/dev/null; }

# wine_remember MODE: uses it, now and in later runs.
wine_remember() {
  wine_use "$1"
  mkdir -p "$WINE_FOLDER"
  if [[ $1 == witness ]]; then wine_version >"$WINE_FOLDER/version"; return; fi
  printf '%s\n' "$1" "$(wine_version || true)" >build/wine/mode
}

# wine_remembered KIND: true if the stored mode is still valid for that kind of work. A better one
# is tried once all packages are installed, or when the user runs `./marl setup`.
wine_remembered() {
  local mode version
  { read -r mode && read -r version; } 2>/dev/null <build/wine/mode || return
  case $mode in
    machine) ;;
    *) wine_lacks "${WINE_PACKAGES[@]}" || return ;;
  esac
  case $mode in
    none) [[ $1 == test ]] && return ;;
    64) [[ $1 != all ]] || return ;;
    root) root_ready "$PRIVATE_ROOT" || return ;;
  esac
  [[ $version == "$(wine_version)" ]]
}

# cannot_run PART: prints why a part of the tests cannot run on this machine; nothing if it can. The
# names of Windows parts contain win32 or win64.
cannot_run() {
  case $WINE_MODE:$1 in
    64:*win32*) echo "$WINE_NO_32" ;;
    none:*win32* | none:*win64*) echo "$WINE_NONE" ;;
  esac
}

if [[ -n ${MARL_WITNESS:-} ]]; then
  wine_use witness
elif [[ -f build/wine/mode ]]; then
  wine_use "$(head -n 1 build/wine/mode)"
fi

WINE_BEGUN=
WINE_TEMP=
XVFB_PID=

# wine_begin NAME [DPI [SIZE]]: prepares the prefix NAME in WINE_FOLDER, with its own display, of
# SIZE pixels. A new prefix is a copy of the template.
wine_begin() {
  local dpi=${2:-96}
  if [[ -n $WINE_BEGUN || -n ${MARL_WINE_PREFIX:-} ]]; then return; fi
  wine_version >/dev/null || fail "$WINE_NONE"
  export WINEPREFIX=$ROOT/$WINE_FOLDER/$1 WINEDEBUG=-all
  export WINEDLLOVERRIDES='mscoree,mshtml=;winemenubuilder.exe=d'
  export MARL_WINE_PREFIX=$WINEPREFIX
  WINE_BEGUN=$1
  trap wine_end EXIT
  trap 'exit 130' INT
  trap 'exit 143' TERM
  # A higher resolution needs more pixels for the same area.
  local size=${3:-$((1024 * dpi / 96))x$((768 * dpi / 96))}
  if ! prefix_ready "$1"; then rm -rf "$WINEPREFIX"; fi
  mkdir -p "$WINEPREFIX"
  if [[ -z ${MARL_USE_DISPLAY:-} ]]; then
    display_begin "$size"
  elif [[ $WINE_MODE != machine && -f ${XAUTHORITY:-$HOME/.Xauthority} ]]; then
    install -m 600 "${XAUTHORITY:-$HOME/.Xauthority}" "$WINE_FOLDER/display"
    export XAUTHORITY=$ROOT/$WINE_FOLDER/display
  fi
  if ! prefix_ready "$1"; then
    wine_template || exit 1
    prefix_copy template "$1"
    wine_desktop "$size" "$dpi"
    echo "$WINE_MODE" >"$WINEPREFIX/marl-ready"
  fi
}

# A prefix of one mode cannot be used in another.
prefix_ready() { [[ $(cat "$WINE_FOLDER/$1/marl-ready" 2>/dev/null) == "$WINE_MODE" ]]; }

# wine_template: makes the prefix that all others are copies of, if there is none: setting up a prefix
# takes Wine ten seconds and more than a gigabyte, and a copy almost nothing. Needs a display.
wine_template() (
  flock 9
  if prefix_ready template; then exit; fi
  export WINEPREFIX=$ROOT/$WINE_FOLDER/template
  rm -rf "$WINEPREFIX"
  mkdir -p "$WINEPREFIX"
  "${WINE_VIA[@]}" wineboot -i >/dev/null 2>&1 9>&- ||
    fail "the Wine prefix $WINEPREFIX could not be made"
  # The fonts of window frames and old dialogs, where this version of Wine looks for them.
  # shellcheck disable=SC2016
  "${WINE_VIA[@]}" sh -c 'for font in /usr/share/wine/fonts/*; do
      [ ! -f "$font" ] || ln -sf "$font" "$WINEPREFIX/drive_c/windows/Fonts/"
    done'
  wine_rest
  echo "$WINE_MODE" >"$WINEPREFIX/marl-ready"
) 9>"$WINE_FOLDER/lock"

# prefix_copy FROM TO: a copy of a prefix. Files are hard links, except for the registry, which Wine
# would otherwise change in both.
prefix_copy() {
  local from=$ROOT/$WINE_FOLDER/$1 to=$ROOT/$WINE_FOLDER/$2 file
  rm -rf "$to"
  cp -al "$from" "$to"
  for file in "$from"/*.reg "$from"/.update-timestamp "$from"/marl-ready; do
    cp --remove-destination -p "$file" "$to/"
  done
}

# wine_desktop SIZE DPI: gives the prefix one desktop for all its programs.
wine_desktop() {
  cat >"$WINEPREFIX/drive_c/marl.reg" <<EOF
REGEDIT4

[HKEY_CURRENT_USER\\Software\\Wine\\Explorer]
"Desktop"="Default"

[HKEY_CURRENT_USER\\Software\\Wine\\Explorer\\Desktops]
"Default"="$1"

; A taskbar with a notification area, which newer versions show only if asked.
[HKEY_CURRENT_USER\\Software\\Wine\\Explorer\\Desktops\\Default]
"EnableShell"=dword:00000001

[HKEY_CURRENT_USER\\Control Panel\\Desktop]
"LogPixels"=dword:$(printf %08x "$2")
EOF
  "${WINE_VIA[@]}" wine regedit /S 'C:\marl.reg'
  rm "$WINEPREFIX/drive_c/marl.reg"
  wine_rest
}

# Moves the prefix's temporary files into memory until wine_end, if the machine has /dev/shm. On
# disk, truncating a file that was just written waits for the write: setting the values of an INI
# file one by one takes some 4 ms per value instead of 0.1.
wine_temp_in_memory() {
  local folder
  WINE_TEMP=$(mktemp -d /dev/shm/marl-XXXXXX 2>/dev/null) || return 0
  for folder in "$WINEPREFIX"/drive_c/users/*/Temp; do
    if [[ ! -d $folder && ! -L $folder ]]; then continue; fi
    rm -rf "$folder"
    ln -s "$WINE_TEMP" "$folder"
  done
}

# wine_small_disk NAME: makes a file system of 64 KB of its own for tests, until wine_end, and passes
# its folder on as MARL_SMALL_DISK. Only root can; without it, tests that need it are skipped.
wine_small_disk() {
  local folder=$ROOT/$WINE_FOLDER/disk-$1
  unset MARL_SMALL_DISK
  mkdir -p "$folder"
  # A run that was killed has left it there.
  if mountpoint -q "$folder" || mount -t tmpfs -o size=64k,mode=777 tmpfs "$folder" 2>/dev/null; then
    rm -rf "${folder:?}"/*
    export MARL_SMALL_DISK=$folder
  fi
}

# Ends everything in the prefix; it starts again with the next program.
wine_rest() {
  "${WINE_VIA[@]}" wineserver -k
  "${WINE_VIA[@]}" wineserver -w
}

# wine_dpi DPI: sets the resolution.
wine_dpi() {
  "${WINE_VIA[@]}" wine reg add 'HKCU\Control Panel\Desktop' /v LogPixels /t REG_DWORD /d "$1" /f \
    >/dev/null
  wine_rest
}

# one_processor: keeps this shell and what it starts on one processor, each caller on the next one.
# Wine's programs and its server answer each other thousands of times a second, and between two
# processors each answer wakes the other one up: on virtual machines that takes a third of the time.
one_processor() {
  local processors=() turn
  read -ra processors < <(taskset -cp $$ 2>/dev/null | sed 's/.*: //' | tr ',' '\n' |
    awk -F- '{ for (n = $1; n <= (NF > 1 ? $2 : $1); ++n) printf "%d ", n }') || true
  ((${#processors[@]} > 1)) || return 0
  mkdir -p "$WINE_FOLDER"
  turn=$(
    exec 9>"$WINE_FOLDER/turn.lock"
    flock 9
    turn=$(cat "$WINE_FOLDER/turn" 2>/dev/null) || true
    echo $((turn + 1)) | tee "$WINE_FOLDER/turn"
  )
  taskset -cp "${processors[turn % ${#processors[@]}]}" "$BASHPID" >/dev/null
}

# Starts a virtual display with a free number and sets DISPLAY.
display_begin() {
  local answer
  # No test types composed letters, and reading their table takes a tenth of a program's start.
  export XCOMPOSEFILE=/dev/null
  # Nor are there resources, but while there is no file of them Xlib looks for one at each font.
  export XENVIRONMENT=/dev/null
  exec {answer}< <(exec Xvfb -displayfd 1 -screen 0 "${1}x24" -nolisten tcp -noreset 2>/dev/null)
  XVFB_PID=$!
  local number=
  read -r -t 20 -u "$answer" number || fail "no virtual display could be started"
  export DISPLAY=:$number
}

wine_end() {
  local status=$? folder
  trap - EXIT
  if [[ -n $WINE_BEGUN ]]; then
    "${WINE_VIA[@]}" wineserver -k 2>/dev/null || true
    "${WINE_VIA[@]}" wineserver -w 2>/dev/null || true
    WINE_BEGUN=
  fi
  if [[ -n $WINE_TEMP ]]; then
    rm -rf "$WINE_TEMP"
    for folder in "$WINEPREFIX"/drive_c/users/*/Temp; do
      if [[ -L $folder ]]; then rm "$folder" && mkdir "$folder"; fi
    done
    WINE_TEMP=
  fi
  if [[ -n ${MARL_SMALL_DISK:-} ]]; then
    umount "$MARL_SMALL_DISK" || true
    unset MARL_SMALL_DISK
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
  if [[ -n ${MARL_TESTING:-} ]]; then one_processor; fi
  wine_begin "$name" "${MARL_WINE_DPI:-96}"
  wine_temp_in_memory
  if [[ $name == desktop* ]]; then
    mkdir -p "$SHOTS_FOLDER/$name"
    export MARL_SHOTS="Z:$ROOT/$SHOTS_FOLDER/$name"
  fi
  "${WINE_VIA[@]}" wine "$@"
}
