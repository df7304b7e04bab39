# Makes a release: archives and installer packages of every language and width, and what belongs to
# them. Sourced by ./marl.
#
# A release is built from a clean export of the last commit. What it contains depends on the commit
# and on the versions of the tools alone: not on the folder, the time, the user or the locale.

RELEASE_WIDTHS=(32 64)
declare -A RELEASE_TRIPLET=([32]=i686-w64-mingw32 [64]=x86_64-w64-mingw32)

# release_parts FOLDER: builds everything from the current folder; SOURCE_DATE_EPOCH is its time.
release_parts() {
  local out=$1 width code build version package
  version=$(version_form NUMBER)
  package=$(version_form PACKAGE)
  mkdir -p "$out"
  for width in "${RELEASE_WIDTHS[@]}"; do
    build=build/release$width
    cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DMARL_RELEASE=ON -DMARL_TESTS=OFF \
      -DCMAKE_TOOLCHAIN_FILE="$PWD/cmake/mingw-${RELEASE_TRIPLET[$width]%%-*}.cmake" \
      >/dev/null || fail "the $width-bit program cannot be configured"
    for code in $(languages); do
      say "Building $code, $width bits"
      release_program "$code" "$width" "$build" "build/stage/$code$width"
    done
    say "Symbols, $width bits"
    tools/release.py zip "build/symbols$width" "$out/Marl-$version-symbols-win$width.zip"
  done
  for width in "${RELEASE_WIDTHS[@]}"; do
    for code in $(languages); do
      say "Packing $code, $width bits"
      tools/release.py zip "build/stage/$code$width" "$out/Marl-$version-$code-win$width.zip"
      tools/installer.py "build/stage/$code$width" "$code" "$width" "$package" "$SOURCE_DATE_EPOCH" \
        "$out/Marl-$version-$code-win$width.msi"
      release_sign "$out/Marl-$version-$code-win$width.msi"
    done
  done
  cp CHANGELOG.md "$out/"
  tools/release.py bill "$version" build/stage "$out/Marl-$version-bom.cdx.json"
  tools/release.py winget "$version" "$package" "$out" "$out/winget"
  (cd "$out" && find . -type f ! -name SHA256SUMS -printf '%P\n' | LC_ALL=C sort |
    xargs -d '\n' sha256sum >SHA256SUMS)
}

# release_program CODE WIDTH BUILD FOLDER: a program folder, with symbols apart from it.
release_program() {
  local code=$1 width=$2 build=$3 folder=$4 tool=${RELEASE_TRIPLET[$2]} symbols=build/symbols$2
  local suffix
  suffix=$(language_suffix "$code")
  cmake --build "$build" --parallel "$JOBS" --target program ${suffix:+"program_$code"} >"$build/log" ||
    { tail -30 "$build/log"; fail "the $width-bit program cannot be built"; }
  rm -rf "$folder"
  cmake --install "$build" --component program --prefix "$folder" >/dev/null
  if [[ -n $suffix ]]; then
    cmake --install "$build" --component "program_$code" --prefix "$folder" >/dev/null
  fi
  mkdir -p "$symbols/$code"
  "$tool-objcopy" --only-keep-debug "$folder/Marl.exe" "$symbols/$code/Marl.debug"
  "$tool-strip" "$folder/Marl.exe"
  (cd "$symbols/$code" && "$tool-objcopy" --add-gnu-debuglink=Marl.debug "$ROOT/$folder/Marl.exe")
  release_sign "$folder/Marl.exe" "$folder/q17icl.oru"
  ship_help "$code" "$folder"
  tools/release.py licences "$width" "$folder/Licences"
}

# release_sign FILE...: signs with MARL_SIGN_KEY and MARL_SIGN_CERT, if they are set. The password of
# the key is in the file MARL_SIGN_PASSFILE; MARL_SIGN_TIMESTAMP is the address of a time-stamp server.
release_sign() {
  local file options=(-h sha256 -n Marl -i http://www.marl.example)
  [[ -n ${MARL_SIGN_KEY:-} ]] || return 0
  [[ -n ${MARL_SIGN_CERT:-} ]] || fail "MARL_SIGN_KEY needs MARL_SIGN_CERT, the certificate"
  if [[ -n ${MARL_SIGN_PASSFILE:-} ]]; then options+=(-readpass "$MARL_SIGN_PASSFILE"); fi
  if [[ -n ${MARL_SIGN_TIMESTAMP:-} ]]; then
    options+=(-ts "$MARL_SIGN_TIMESTAMP")
  elif osslsigncode sign --help 2>&1 | grep -q -e '-time '; then
    options+=(-time "$SOURCE_DATE_EPOCH")
  else
    options+=(-st "$SOURCE_DATE_EPOCH")
  fi
  for file in "$@"; do
    osslsigncode sign -certs "$MARL_SIGN_CERT" -key "$MARL_SIGN_KEY" "${options[@]}" \
      -in "$file" -out "$file.signed" >/dev/null || fail "$file could not be signed"
    mv "$file.signed" "$file"
  done
}

# Signs with a certificate made for the purpose, and verifies: a signed file is valid, a changed one is
# not.
release_test_signing() {
  local work=build/release/signing file status=0
  rm -rf $work
  mkdir -p $work
  openssl req -x509 -newkey rsa:2048 -nodes -keyout $work/key.pem -out $work/cert.pem -days 2 \
    -subj '/CN=Marl test' -addext extendedKeyUsage=codeSigning 2>/dev/null
  for file in "$@"; do
    cp "$file" "$work/file"
    (export MARL_SIGN_KEY=$work/key.pem MARL_SIGN_CERT=$work/cert.pem MARL_SIGN_TIMESTAMP=
     release_sign "$work/file")
    if ! osslsigncode verify -CAfile $work/cert.pem -in "$work/file" >$work/log 2>&1; then
      tail -5 $work/log
      say "FAILED: the signature of ${file##*/} is not valid"
      status=1
    fi
    # A byte of the contents, far from the signature.
    printf '\xff' | dd of="$work/file" bs=1 seek=$(($(stat -c %s "$file") / 2)) conv=notrunc 2>/dev/null
    printf '\x00' | dd of="$work/file" bs=1 seek=$(($(stat -c %s "$file") / 2 + 1)) conv=notrunc 2>/dev/null
    if osslsigncode verify -CAfile $work/cert.pem -in "$work/file" >$work/log 2>&1; then
      say "FAILED: a changed ${file##*/} still has a valid signature"
      status=1
    fi
  done
  ((status)) || say "Signing: $# files signed with a test certificate and verified, changed ones refused"
  return $status
}

# release_export FOLDER: the last commit, without anything else.
release_export() {
  rm -rf "$1"
  mkdir -p "$1"
  git archive --format=tar HEAD | tar x -C "$1"
}

# release_again FOLDER OUT: builds once more, as another user with another home, locale, time zone and
# mask for new files.
release_again() {
  local folder=$1 out=$2 locales user=()
  release_export "$folder"
  locales=$folder.locales
  rm -rf "$locales"
  mkdir -p "$locales" "$out"
  localedef -i de_DE -f UTF-8 "$locales/de_DE.UTF-8" 2>/dev/null || true
  if [[ $(id -u) == 0 ]]; then
    chown -R 65534:65534 "$folder" "$out"
    user=(setpriv --reuid 65534 --regid 65534 --clear-groups)
  else
    say "Not root: the second build runs as the same user"
  fi
  (umask 077 && cd "$folder" && "${user[@]}" env -i PATH=/usr/local/bin:/usr/bin:/bin HOME="$folder" \
    USER=somebody LOCPATH="$locales" LC_ALL=de_DE.UTF-8 TZ=Pacific/Auckland MARL_JOBS="$JOBS" \
    SOURCE_DATE_EPOCH="$SOURCE_DATE_EPOCH" ${MARL_SIGN_KEY:+MARL_SIGN_KEY="$MARL_SIGN_KEY"} \
    ${MARL_SIGN_CERT:+MARL_SIGN_CERT="$MARL_SIGN_CERT"} ./marl release --parts "$out")
}

# release_compare ONE OTHER: names every difference.
release_compare() {
  local name status=0
  while read -r name; do
    if [[ ! -f $1/$name || ! -f $2/$name ]]; then
      say "FAILED: only one build has $name"
      status=1
    elif ! cmp -s "$1/$name" "$2/$name"; then
      say "FAILED: the builds differ in $name"
      diffoscope --max-report-size 20000 "$1/$name" "$2/$name" | head -60 || true
      status=1
    fi
  done < <((cd "$1" && find . -type f; cd "$2" && find . -type f) | sort -u)
  ((status)) || say "Both builds are the same, byte by byte: $(find "$1" -type f | wc -l) files"
  return $status
}

# release_check OUT: the contents, the tables, the signatures and the installer packages.
release_check() {
  local out=$1 export=$ROOT/build/release/export version package width code words=() files=() status=0
  version=$(version_form NUMBER)
  package=$(version_form PACKAGE)
  for width in "${RELEASE_WIDTHS[@]}"; do
    for code in $(languages); do
      words+=("$code" "$width" "$export/build/stage/$code$width" "$out/Marl-$version-$code-win$width.msi")
      files+=("$out/Marl-$version-$code-win$width.msi")
    done
  done
  say "Contents"
  tools/release.py check "$version" "$out" "$export/build/stage" || status=1
  say "Tables of the installer packages"
  tools/installer_check.py "${words[@]}" || status=1
  if [[ -z ${MARL_SIGN_KEY:-} ]]; then
    release_test_signing "$export/build/stage/$(first_language)32/Marl.exe" "${files[0]}" || status=1
  fi
  if [[ $WINE_MODE == none || $WINE_MODE == 64 ]]; then
    say "NOT RUN: installing, because 32-bit programs do not run here"
    status=1
  else
    say "Installing under Wine"
    rm -rf build/wine/installer
    (unset DISPLAY; wine_begin installer
     # shellcheck disable=SC2031
     WINE="${WINE_VIA[*]} wine" tools/installer_test.py "$package" "$export/build/stand_in.exe" \
       "${words[@]}") || status=1
  fi
  return $status
}

cmd_release() {
  local check= out=$ROOT/dist/release export=$ROOT/build/release/export again status=0
  case ${1:-} in
    --parts) release_parts "${2:?--parts needs a folder}"; return ;;
    --check) check=1 ;;
    '') ;;
    *) usage >&2; fail "unknown: $1" ;;
  esac
  ensure_packages release
  git rev-parse --verify -q HEAD >/dev/null || fail "a release is made from a commit; this is no checkout"
  if [[ -n $(git status --porcelain) ]]; then
    say "THERE ARE CHANGES THAT ARE NOT COMMITTED: they are not in the release"
  fi
  SOURCE_DATE_EPOCH=$(git log -1 --format=%ct HEAD)
  export SOURCE_DATE_EPOCH
  say "Version $(version_form NUMBER), commit $(git rev-parse --short HEAD)"
  if [[ -z ${MARL_SIGN_KEY:-} ]]; then
    say "UNSIGNED: MARL_SIGN_KEY and MARL_SIGN_CERT sign programs and packages"
  fi
  rm -rf "$out"
  mkdir -p "$out" build/release
  release_export "$export"
  # The export has no packages to install, and no Wine to look for.
  (cd "$export" && ./marl release --parts "$out") || fail "the release could not be built"
  cp "$(release_stand_in)" "$export/build/stand_in.exe"
  if [[ -n $check ]]; then
    if [[ -n ${MARL_SIGN_TIMESTAMP:-} ]]; then fail "with a time-stamp server no two builds are the same"; fi
    say "Building again, elsewhere"
    again=$(mktemp -d /var/tmp/marl-again-XXXXXX)
    chmod 755 "$again"
    release_again "$again/somewhere else/marl" "$again/out" || status=1
    release_compare "$out" "$again/out" || status=1
    rm -rf "$again"
  fi
  release_check "$out" || status=1
  tools/release.py sizes "$out" || status=1
  ((status == 0)) || fail "the release is not good"
  say "The release is in dist/release"
}

# The stand-in for the suite's tools, which is no part of a release.
release_stand_in() {
  cmake --build "$ROOT/build/release/export/build/release32" --target stand_in >/dev/null
  echo "$ROOT/build/release/export/build/release32/suite/stand_in.exe"
}
