#!/usr/bin/env bash
# Redraws all pictures of the program: `./marl art`, or tools/art.sh itself.
#
# Each button has a glyph (resources/art/glyphs), each icon set a style (resources/art/styles), both
# SVG on a grid of 48 by 48 units. A style marks the place of the glyph by @GLYPH@, and may use the
# button's colours (resources/art/tints.txt). The pictures are checked in, so librsvg2-bin,
# imagemagick and zopfli are needed only to change the art.
set -euo pipefail
ART_ROOT=$(cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/.." && pwd)
ART=$ART_ROOT/resources/art
ICONS=$ART_ROOT/resources/icons
DOCS=$ART_ROOT/docs
ART_SETS=(0 1 2 3)
ART_SIZES=(48 72 96)
ART_JOBS=${MARL_JOBS:-$(nproc)}

# Compresses well, keeps 32 bits per pixel, and gives the same bytes on every run.
PNG_OUT=(-strip -define png:compression-level=9 -define png:compression-filter=5
         -define png:compression-strategy=1 -define "png:exclude-chunks=date,time,gAMA,cHRM,bKGD")

# art_compose GLYPH STYLE: prints the picture of one button in one style.
art_compose() {
  local name
  name=$(basename "$1" .svg)
  awk -v name="$name" '
    FILENAME == ARGV[1] { if ($1 == name) { light = $2; deep = $3; pale = $4 } next }
    FILENAME == ARGV[2] { if ($0 !~ /^<\/?svg/) body = body $0 "\n"; next }
    /@GLYPH@/ { printf "%s", body; next }
    { gsub("@LIGHT@", light); gsub("@DEEP@", deep); gsub("@PALE@", pale); print }
  ' "$ART/tints.txt" "$1" "$2"
}

# art_render SIZE SVG PNG
art_render() {
  rsvg-convert --width "$1" --height "$1" "$2" --output "$3"
}

# art_row STYLE SIZE PNG: all buttons in one style, side by side.
art_row() {
  local style=$1 size=$2 glyph base pictures=()
  for glyph in "$ART"/glyphs/*.svg; do
    base=${glyph##*/}
    base=$ART_WORK/$(basename "$style" .svg)-${base%%-*}
    [[ -f $base.svg ]] || art_compose "$glyph" "$style" >"$base.svg"
    art_render "$size" "$base.svg" "$base-$size.png"
    pictures+=("$base-$size.png")
  done
  convert "${pictures[@]}" +append "${PNG_OUT[@]}" "PNG32:$3"
}

# art_strip SET SIZE: the dull row above the bright one.
art_strip() {
  local row rows=()
  for row in dull bright; do
    art_row "$ART/styles/set$1-$row.svg" "$2" "$ART_WORK/set$1-$row-$2.png"
    rows+=("$ART_WORK/set$1-$row-$2.png")
  done
  convert "${rows[@]}" -append "${PNG_OUT[@]}" "PNG32:$ICONS/set$1_$2.png"
}

# art_sheet SET: how a set looks on the panel, dull and bright, on the default gradient.
art_sheet() {
  convert "$ICONS/set$1_48.png" -crop 48x48 +repage "$ART_WORK/sheet$1-%02d.png"
  montage "$ART_WORK/sheet$1-"{00..35}.png -tile 9x4 -geometry +14+11 -background none \
    "$ART_WORK/sheet$1.png"
  local width height
  read -r width height < <(identify -format '%w %h\n' "$ART_WORK/sheet$1.png")
  convert -size "${width}x$height" gradient:'#b6cbc5-#004d39' "$ART_WORK/sheet$1.png" -composite \
    "${PNG_OUT[@]}" "PNG24:$DOCS/icons-set$1.png"
}

# art_number BYTES VALUE: prints a number, low byte first.
art_number() {
  local i value=$2 text=
  for ((i = 0; i < $1; ++i)); do
    text+=$(printf '\\x%02x' $((value & 255)))
    value=$((value >> 8))
  done
  printf "%b" "$text"
}

# The application icon; and, for the program file, four of its pictures as separate resources with
# their directory. Their ids must not change, and resource compilers would choose other ones.
art_application_icon() {
  local size corner rim left right wide top bottom notch tip pictures=() base
  while read -r size corner rim left right wide top bottom notch tip; do
    [[ $size != '#' ]] || continue
    base=$ART_WORK/application-$size
    sed -e "s/@SIZE@/$size/g; s/@CORNER@/$corner/g; s/@CORNER2@/$((corner - rim))/g" \
      -e "s/@RIM@/$rim/g; s/@INNER@/$((size - 2 * rim))/g; s/@MIDDLE@/$((size / 2))/g" \
      -e "s/@LEFT@/$left/g; s/@LEFT2@/$((left + wide))/g; s/@RIGHT@/$right/g" \
      -e "s/@RIGHT2@/$((right - wide))/g; s/@TOP@/$top/g; s/@BOTTOM@/$bottom/g" \
      -e "s/@NOTCH@/$notch/g; s/@TIP@/$tip/g" "$ART/application.svg" >"$base.svg"
    art_render "$size" "$base.svg" "$base.png"
    pictures+=("$base.png")
  done <"$ART/application.txt"
  convert "${pictures[@]}" "$ICONS/Marl.ico"

  local entry width bytes offset number=30001 index=0 group=$ICONS/program-group.bin
  { art_number 2 0; art_number 2 1; art_number 2 4; } >"$group"
  while ((index < 8)); do
    entry=$((6 + 16 * index))
    index=$((index + 1))
    read -r width bytes offset < <(
      od -An -v -tu1 -w16 -j "$entry" -N 16 "$ICONS/Marl.ico" |
        awk '{ print $1, $9 + 256 * ($10 + 256 * $11), $13 + 256 * ($14 + 256 * $15) }')
    case $width in 16 | 32 | 48 | 0) ;; *) continue ;; esac
    tail -c +$((offset + 1)) "$ICONS/Marl.ico" | head -c "$bytes" >"$ICONS/program-$number.bin" ||
      true
    {
      art_number 1 "$width"; art_number 1 "$width"; art_number 2 0; art_number 2 1
      art_number 2 32; art_number 4 "$bytes"; art_number 2 "$number"
    } >>"$group"
    number=$((number + 1))
  done
}

# art_picture NAME SIZE LEFT TOP GLYPH...: a picture with a row of bright buttons of that size at
# that position, at 96, 144 and 192 dpi.
art_picture() {
  local name=$1 size=$2 left=$3 top=$4 zoom suffix number row strip=$ART_WORK/set0-bright
  shift 4
  for zoom in 2 3 4; do
    suffix=
    ((zoom == 2)) || suffix=_$((zoom * 48))
    row=()
    for number in "$@"; do
      art_render $((size * zoom / 2)) "$strip-$number".svg "$ART_WORK/row-$number.png"
      row+=("$ART_WORK/row-$number.png")
    done
    montage "${row[@]}" -tile x1 -geometry "+$((size * zoom / 16))+0" -background none \
      "$ART_WORK/row.png"
    rsvg-convert --zoom $((zoom / 2)).$((zoom % 2 * 5)) "$ART/$name.svg" \
      --output "$ART_WORK/$name.png"
    convert "$ART_WORK/$name.png" "$ART_WORK/row.png" \
      -geometry "+$((left * zoom / 2))+$((top * zoom / 2))" -composite \
      "${PNG_OUT[@]}" "PNG24:$ICONS/$name$suffix.png"
  done
}

# Compresses the program's pictures as far as the format allows, which takes minutes. All visible
# pixels stay as they are.
art_squeeze() {
  printf '%s\0' "$ICONS"/*.png |
    xargs -0 -P "$ART_JOBS" -I{} zopflipng -y --lossy_transparent {} {} >/dev/null
}

art_main() {
  ART_WORK=$(mktemp -d)
  trap 'rm -rf "$ART_WORK"' EXIT
  mkdir -p "$ICONS" "$DOCS"
  local set size jobs=()
  for set in "${ART_SETS[@]}"; do
    for size in "${ART_SIZES[@]}"; do art_strip "$set" "$size"; done &
    jobs+=($!)
    if ((${#jobs[@]} >= ART_JOBS)); then
      wait "${jobs[0]}"
      jobs=("${jobs[@]:1}")
    fi
  done
  for set in "${jobs[@]}"; do wait "$set"; done
  for size in 16 24; do art_row "$ART/styles/menu-$size.svg" "$size" "$ICONS/menu_$size.png"; done
  for set in "${ART_SETS[@]}"; do art_sheet "$set"; done
  art_application_icon
  art_picture splash 32 60 240 00 01 02 03 05 09 10 12 14
  art_picture about 32 216 32 00 02 05 10
  art_squeeze
}

art_main
