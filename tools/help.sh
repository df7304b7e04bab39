# Builds the help that comes with the program, checks it, and takes its pictures. Sourced by ./marl.

# version_form FORM: the version as NUMBER, TEXT or PACKAGE (cmake/VersionFile.cmake).
version_form() {
  local line
  case $1 in NUMBER) line=1 ;; TEXT) line=2 ;; PACKAGE) line=3 ;; esac
  cmake -P cmake/VersionFile.cmake 2>&1 | sed -n "${line}p"
}

# build_help CODE FOLDER: the help in one language.
build_help() { tools/help.py "$1" "$(version_form TEXT)" "$2"; }

# ship_help CODE FOLDER: adds the help to a program folder, where the program looks for it.
ship_help() {
  rm -rf "$2/Help"
  build_help "$1" "$2/Help/$1"
}

# Builds the help in all languages and opens every page in a browser. Pictures of some pages are left
# in out/help.
cmd_help-check() {
  local code status=0 tools=build/help-check browser
  ensure_packages help-check
  mkdir -p $tools
  cp tools/help_check/package.json tools/help_check/package-lock.json $tools/
  if ! cmp -s $tools/package-lock.json $tools/installed.json; then
    (cd $tools && npm ci --no-audit --no-fund --silent) || fail "npm could not install the checkers"
    cp $tools/package-lock.json $tools/installed.json
  fi
  browser=$(command -v chromium)
  while read -r code; do
    say "Checking the help: $code"
    rm -rf "build/help/$code" "out/help/$code"
    build_help "$code" "build/help/$code"
    (cd $tools && node "$ROOT/tools/help_check/check.mjs" "$ROOT/build/help/$code" "$code" \
      "$browser" "$ROOT/out/help/$code") || status=1
  done < <(languages)
  say "Pictures of some pages are in out/help"
  return $status
}

# The pictures of the help, and which form's picture each is made of (`./marl shots`).
HELP_PICTURES=(panel=frmMain-hover select-file=frmSelectFile server=frmChangeServer
               proxy=frmLanSettings-override display-settings=frmUI font=frmFont
               options-switchboard=frmOptions-1 options-general=frmOptions-2
               options-hidden-segments=frmOptions-4 segmentation=frmSegmentation
               tray-menu=tray-menu)

# Retakes the pictures of the help in all languages.
cmd_help-pictures() {
  local code pair from to
  cmd_shots --dpi 96
  while read -r code; do
    mkdir -p "help/$code/pictures"
    for pair in "${HELP_PICTURES[@]}"; do
      from=out/shots/forms/$code/96/${pair#*=}.png to=help/$code/pictures/${pair%%=*}.png
      [[ -f $from ]] || fail "there is no $from"
      # 255 colours look the same here and take a third of the room; no dates, so that the same
      # picture is the same file.
      convert "$from" -strip -dither None -colors 255 -define png:exclude-chunks=date,time,tIME \
        -define png:compression-level=9 "PNG8:$to"
    done
    say "help/$code/pictures: $(du -ch help/"$code"/pictures/*.png | tail -1 | cut -f1)"
  done < <(languages)
  convert 'resources/icons/Marl.ico[5]' -strip -define png:exclude-chunks=date,time,tIME help/marl.png
}
