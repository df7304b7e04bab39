# Opens the switchboard in a demo suite. Sourced by ./marl.

TOOLS=(Q17Gauge.exe Q17Pair.exe Q17Lexis.exe Q17Cadence.exe Q17Batch.exe Q17Bench.exe Q17Warden.exe
       Q17Kit.exe Q17Vault.exe Q17Renew.exe Q17Diff.exe Q17Bridge.exe Q17Cleave.exe Q17Xlf.exe
       MarlTour.exe RegLib.EXE Q17Shell.exe FaceMap.exe Q17Morph.exe WordRich.exe PageTool.exe
       FrameTool.exe)
DEMO_SETTINGS='HKCU\Software\VB and VBA Program Settings\Marl'
DEMO_KEY='HKCU\Software\Oru\Marl'

# The preset of the program for the demo: the 32-bit one, if it runs here.
demo_width() { if [[ -z $(cannot_run win32) ]]; then echo win32; else echo win64; fi; }

# Builds the program and the stand-in.
demo_build() {
  ensure_packages help
  build_program "$(demo_width)"
  ship_help "$(first_language)" "dist/$(demo_width)"
  build_preset "$(demo_width)" stand_in >/dev/null
}

# Creates a suite folder: the program, its files, and a stand-in for every tool.
demo_layout() {
  local tool
  SUITE="$ROOT/build/demo/$(demo_width)/Marl Suite"
  mkdir -p "$SUITE"
  cp -ru "dist/$(demo_width)/." "$SUITE/"
  for tool in "${TOOLS[@]}"; do
    cp -u "build/$(demo_width)/suite/stand_in.exe" "$SUITE/$tool"
  done
}

has_display() {
  [[ -n ${DISPLAY:-} ]] && xwininfo -root >/dev/null 2>&1
}

cmd_run() {
  ensure_packages run
  demo_build
  demo_layout
  if has_display; then
    MARL_USE_DISPLAY=1 wine_begin demo
    say "The switchboard is open; the window shows a desktop of its own, with a taskbar"
    (cd "$SUITE" && "${WINE_VIA[@]}" wine Marl.exe)
  else
    say "No display here: showing it on a virtual one"
    demo_alone 96
  fi
}

SHOT_RESOLUTIONS=(96 120 144 168 192 240)

# Screenshots of every form in out/shots/forms/LANGUAGE/DPI (and .../contrast), and a contact sheet beside it. Without
# arguments: all languages, all resolutions, and the demo's screenshots too.
cmd_shots() {
  local languages resolutions=("${SHOT_RESOLUTIONS[@]}") demo=1 code
  mapfile -t languages < <(languages)
  while (($#)); do
    demo=
    case $1 in
      --language) code=$(language_option "${@:1:2}"); languages=("$code") ;;
      --dpi) resolutions=("${2:?--dpi needs a number}") ;;
      *) usage >&2; fail "unknown: $1" ;;
    esac
    shift 2
  done
  ensure_packages run
  (form_shots)
  if [[ -z $demo ]]; then return; fi
  build_program win32
  build_preset win32 stand_in >/dev/null
  demo_layout
  (demo_alone 96)
  (demo_alone 144)
}

# The forms in the chosen languages at the chosen resolutions, and with high contrast, on a screen
# large enough for all.
form_shots() {
  local dpi language folder program options
  unset DISPLAY
  build_preset win32 "${languages[@]/#/forms_tests_}"
  wine_begin shots 96 2560x1920
  for dpi in "${resolutions[@]}" contrast; do
    options=()
    if [[ $dpi == contrast ]]; then
      options=(--contrast)
      wine_dpi 96
    else
      wine_dpi "$dpi"
    fi
    for language in "${languages[@]}"; do
      folder=out/shots/forms/$language/$dpi
      rm -rf "$folder"
      mkdir -p "$folder"
      program=build/win32/tests/forms/forms_tests_$language.exe
      MARL_SHOTS="Z:$ROOT/$folder" "${WINE_VIA[@]}" wine "$program" "--language=$language" "${options[@]}" \
          --gtest_filter='Forms.*' --gtest_brief=1 ||
        fail "not all forms could be shown whole ($language, $dpi)"
      montage "$folder"/*.png -background '#808080' -geometry +8+8 -tile 5x "$folder.png"
      say "$folder, $folder.png"
    done
  done
}

# shot NAME: a picture of the whole screen.
shot() {
  import -window root "$ROOT/out/shots/$1$DEMO_SUFFIX.png"
  say "out/shots/$1$DEMO_SUFFIX.png"
}

# wait_for SECONDS COMMAND...: until the command succeeds.
wait_for() {
  local until=$((SECONDS + $1))
  shift
  until "$@"; do
    ((SECONDS < until)) || return 1
    sleep 0.1
  done
}

# find_window KIND: the program's visible window of that kind into X, Y, W, H. Questions are
# narrow, the splash has no title, the switchboard is named.
find_window() {
  local line name
  while read -r line; do
    [[ $line =~ ^(0x[0-9a-f]+)\ (\"(.*)\"|\(has\ no\ name\)):\ \(\"marl.exe\".*\ ([0-9]+)x([0-9]+)\+-?[0-9]+\+-?[0-9]+\ +\+(-?[0-9]+)\+(-?[0-9]+)$ ]] || continue
    name=${BASH_REMATCH[3]} W=${BASH_REMATCH[4]} H=${BASH_REMATCH[5]}
    X=${BASH_REMATCH[6]} Y=${BASH_REMATCH[7]}
    ((W > 100 && H > 60)) || continue
    xwininfo -id "${BASH_REMATCH[1]}" | grep -q IsViewable || continue
    case $1 in
      question) [[ $name == Marl ]] && ((H * 2 < W || H < 160 * DEMO_DPI / 96)) && return 0 ;;
      splash) [[ -z $name ]] && ((W > 400 && H < W)) && return 0 ;;
      switchboard) [[ $name == Marl* ]] && ((H >= 300)) && return 0 ;;
    esac
  done < <(xwininfo -root -tree | sed 's/^ *//')
  return 1
}

no_window() { ! find_window "$1"; }

# click X Y: moves the mouse there, in screen pixels, and clicks.
click() { xdotool mousemove "$1" "$2" sleep 0.1 click 1; }

# started PROGRAM: true if the demo's log has its start.
started() { grep -q "\"program\": \"$1\"" "$MARL_SUITE_LOG" 2>/dev/null; }

# answer_no: clicks No in the open question.
answer_no() {
  wait_for 15 find_window question || fail "no question appeared"
  sleep 0.3
  click $((X + W / 2 + 34 * DEMO_DPI / 96)) $((Y + H - 22 * DEMO_DPI / 96))
}

# press_button INDEX: clicks the middle of a button's picture. The panel is above the status bar, at
# the bottom of the window.
press_button() {
  local column=$(($1 % 5)) row=$(($1 / 5))
  local pitch_x=$((116 * DEMO_DPI / 96)) pitch_y=$((84 * DEMO_DPI / 96))
  find_window switchboard || fail "the switchboard is gone"
  local foot=$((Y + H - 23 * DEMO_DPI / 96)) left=$((X + 3))
  click $((left + pitch_x / 2 + column * pitch_x)) $((foot - 300 * DEMO_DPI / 96 + row * pitch_y))
}

# Runs the program without a user: the first questions, two tools, exit.
demo_alone() {
  DEMO_DPI=$1 DEMO_SUFFIX=
  if ((DEMO_DPI != 96)); then DEMO_SUFFIX=-$DEMO_DPI; fi
  unset DISPLAY
  local prefix=demo
  if ((DEMO_DPI != 96)); then prefix=demo$DEMO_DPI; fi
  wine_begin "$prefix" "$DEMO_DPI"
  mkdir -p out/shots
  "${WINE_VIA[@]}" wine reg delete "$DEMO_SETTINGS" /f >/dev/null 2>&1 || true
  "${WINE_VIA[@]}" wine reg delete "$DEMO_KEY" /f >/dev/null 2>&1 || true
  export MARL_SUITE_LOG=$WINEPREFIX/drive_c/suite.log
  rm -f "$MARL_SUITE_LOG"
  local status=0 marl
  (cd "$SUITE" && MARL_SUITE_LOG='C:\suite.log' exec "${WINE_VIA[@]}" wine Marl.exe) &
  marl=$!
  say "A fresh user starts the switchboard"
  wait_for 30 find_window question || fail "the first question did not appear"
  sleep 0.3
  shot run-1-first-question
  answer_no
  sleep 0.5
  wait_for 15 started Q17Shell.exe || fail "the context menu entries were not installed"
  answer_no
  if wait_for 3 find_window splash; then
    sleep 0.3
    shot run-2-splash
    click $((X + W / 2)) $((Y + H / 2))
  fi
  wait_for 15 find_window switchboard || fail "the switchboard did not appear"
  sleep 0.5
  shot run-3-switchboard
  press_button 5
  wait_for 15 started Q17Bench.exe || fail "Edit did not start Q17Bench.exe"
  sleep 0.7
  shot run-4-edit
  press_button 8
  wait_for 15 started Q17Warden.exe || fail "Administrator did not start Q17Warden.exe"
  sleep 0.7
  shot run-5-administrator
  press_button 17
  wait_for 10 gone "$marl" || fail "the switchboard did not end"
  wait "$marl" || status=$?
  ((status == 0)) || fail "the switchboard ended with code $status"
  say "The switchboard has ended. It started:"
  sed -E 's/.*"program": "([^"]*)".*"arguments": "(([^"\\]|\\.)*)", "directory": "(([^"\\]|\\.)*)".*/   \1\t[\2]\tin \4/; s/\\\\/\\/g' \
    "$MARL_SUITE_LOG"
}

gone() { [[ ! -d /proc/$1 ]]; }
