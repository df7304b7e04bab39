# Sets a Debian machine up. Sourced by ./marl.

BUILD_PACKAGES=(cmake ninja-build g++ g++-mingw-w64-i686-posix g++-mingw-w64-x86-64-posix
                librsvg2-bin libgtest-dev libgmock-dev googletest lld)
WINE_FONTS=(fonts-wine fonts-liberation)
RUN_PACKAGES=("${WINE_FONTS[@]}" xvfb xauth x11-utils xdotool imagemagick locales)
WINE_PACKAGES=(wine wine64 wine32:i386)
WINE64_PACKAGES=(wine wine64)
BENCH_PACKAGES=(libbenchmark-dev librapidxml-dev libpugixml-dev libexpat1-dev libicu-dev
                libcairo2-dev fd-find)
ART_PACKAGES=(zopfli)
COVERAGE_PACKAGES=(gcovr)
MUTATE_PACKAGES=(python3)
FUZZ_PACKAGES=(clang libclang-rt-14-dev)
HELP_PACKAGES=(cmake python3 pandoc)
# npm comes with its own nodejs on some machines.
NPM_PACKAGES=()
if ! command -v npm >/dev/null; then NPM_PACKAGES=(nodejs npm); fi
RELEASE_PACKAGES=("${HELP_PACKAGES[@]}" wixl msitools osslsigncode openssl diffoscope-minimal git)
HELP_CHECK_PACKAGES=("${HELP_PACKAGES[@]}" chromium fonts-liberation "${NPM_PACKAGES[@]}")

# Prints the packages that are not installed.
missing_packages() {
  local native installed name
  native=$(dpkg --print-architecture)
  installed=" $(dpkg-query -W -f '${db:Status-Status}/${Package}:${Architecture} ' \
                "${@%%:*}" 2>/dev/null || true)"
  for name in "$@"; do
    case $name in
      *:*) [[ $installed == *" installed/$name "* ]] || echo "$name" ;;
      *) [[ $installed == *" installed/$name:$native "* ||
            $installed == *" installed/$name:all "* ]] || echo "$name" ;;
    esac
  done
}

as_root() {
  if [[ $(id -u) == 0 ]]; then "$@"; else sudo "$@"; fi
}

may_install() {
  command -v apt-get >/dev/null && { [[ $(id -u) == 0 ]] || command -v sudo >/dev/null; }
}

# ensure_packages KIND: installs missing packages for a kind of work. Building needs no Wine, and
# without it the tests that can run do.
ensure_packages() {
  local wanted=() missing
  case $1 in
    build) wanted=("${BUILD_PACKAGES[@]}") ;;
    bench) wanted=("${BUILD_PACKAGES[@]}" "${RUN_PACKAGES[@]}" "${BENCH_PACKAGES[@]}") ;;
    art) wanted=("${BUILD_PACKAGES[@]}" "${RUN_PACKAGES[@]}" "${ART_PACKAGES[@]}") ;;
    coverage) wanted=("${BUILD_PACKAGES[@]}" "${COVERAGE_PACKAGES[@]}") ;;
    mutate) wanted=("${BUILD_PACKAGES[@]}" "${MUTATE_PACKAGES[@]}") ;;
    fuzz) wanted=("${BUILD_PACKAGES[@]}" "${FUZZ_PACKAGES[@]}") ;;
    help) wanted=("${HELP_PACKAGES[@]}") ;;
    release) wanted=("${BUILD_PACKAGES[@]}" "${RUN_PACKAGES[@]}" "${RELEASE_PACKAGES[@]}") ;;
    help-check) wanted=("${HELP_CHECK_PACKAGES[@]}") ;;
    *) wanted=("${BUILD_PACKAGES[@]}" "${RUN_PACKAGES[@]}") ;;
  esac
  if ! command -v dpkg-query >/dev/null; then
    check_commands "$1"
  else
    mapfile -t missing < <(missing_packages "${wanted[@]}")
    if ((${#missing[@]})); then
      install_all "${wanted[@]}"
      mapfile -t missing < <(missing_packages "${wanted[@]}")
      ((${#missing[@]} == 0)) || fail "could not be installed: ${missing[*]}"
    fi
  fi
  case $1 in
    build | coverage | mutate | fuzz | help | help-check) ;;
    *) ensure_wine "$1" ;;
  esac
}

# On a machine without Debian's package tools: fails with a list of missing programs.
check_commands() {
  local name names=(cmake ninja g++ i686-w64-mingw32-g++-posix x86_64-w64-mingw32-g++-posix) gone=()
  if [[ $1 == help* ]]; then
    names=(cmake python3 pandoc)
  elif [[ $1 != build ]]; then names+=(wine Xvfb xdotool xwininfo import); fi
  for name in "${names[@]}"; do
    command -v "$name" >/dev/null || gone+=("$name")
  done
  ((${#gone[@]} == 0)) || fail "these programs are missing: ${gone[*]}"
}

# Not empty if this run has tried to install Wine's packages and failed.
WINE_TRIED=

# install_all PACKAGE...: installs these, and at once everything else that building and running
# need: a later install, from a newer index, could want other versions of shared libraries, and Wine
# needs the same versions for two architectures. Goes on without Wine if it cannot be installed.
install_all() {
  local missing native
  mapfile -t native < <(missing_packages "$@" "${BUILD_PACKAGES[@]}" "${RUN_PACKAGES[@]}" | sort -u)
  mapfile -t missing < <(missing_packages "${native[@]}" "${WINE_PACKAGES[@]}")
  may_install || fail "these packages are missing, and installing them needs root or sudo: ${native[*]}
  dpkg --add-architecture i386 && apt-get update && apt-get install ${missing[*]}"
  say "Installing: ${missing[*]}"
  install_together "${missing[@]}" && return
  WINE_TRIED=1
  say "Wine for both widths cannot be installed beside what this machine has; first all the rest"
  apt_install "${native[@]}" || one_index_install "${native[@]}" || true
}

# install_together PACKAGE...: installs normally, or else from the main index alone.
install_together() {
  local added=
  if [[ " $* " == *:i386\ * && " $(dpkg --print-foreign-architectures) " != *i386* ]]; then
    as_root dpkg --add-architecture i386
    added=1
  fi
  as_root apt-get update || say "The package index is not whole; trying all the same"
  if apt_install "$@"; then return; fi
  say "Trying with the main index alone"
  if one_index_install "$@"; then return; fi
  # An unused architecture would only make later updates fail.
  if [[ -n $added ]]; then
    as_root dpkg --remove-architecture i386 && as_root apt-get update -q || true
  fi
  return 1
}

# apt_install PACKAGE...; with the extra options of apt-get in APT_OPTIONS.
APT_OPTIONS=()
apt_install() {
  as_root env DEBIAN_FRONTEND=noninteractive apt-get "${APT_OPTIONS[@]}" install -y --no-remove \
    --no-install-recommends -o Dpkg::Use-Pty=0 "$@"
}

# Installs from one index only, kept apart from the machine's own lists, so that the libraries of
# both architectures have the same versions.
one_index_install() {
  local place status=0
  place=$(mktemp -d)
  chmod 755 "$place"
  mkdir -p "$place/lists/partial"
  main_source | tee "$place/sources.list"
  APT_OPTIONS=(-o "Dir::Etc::sourcelist=$place/sources.list" -o Dir::Etc::sourceparts=/dev/null
               -o "Dir::State::Lists=$place/lists" -o "Dir::Cache::pkgcache=$place/pkgcache.bin"
               -o "Dir::Cache::srcpkgcache=$place/srcpkgcache.bin")
  as_root apt-get "${APT_OPTIONS[@]}" update && apt_install "$@" || status=$?
  APT_OPTIONS=()
  as_root rm -rf "$place"
  return $status
}

release_name() { (. /etc/os-release && echo "${VERSION_CODENAME:-bookworm}"); }

# main_source [RELEASE]: a release's main index as a line of sources.list, from this machine's
# mirror; by default this machine's release.
main_source() {
  local mirror release=${1:-$(release_name)} keyring=/usr/share/keyrings/debian-archive-keyring.gpg signed=
  mirror=$(apt-get indextargets --format '$(RELEASE) $(COMPONENT) $(REPO_URI)' \
                   'Created-By: Packages' 2>/dev/null |
    awk -v r="$(release_name)" '($1 == r || $1 == "stable") && $2 == "main" { print $3 }' |
    sort -u | { grep -m1 '/debian/*$' || true; })
  if [[ -f $keyring ]]; then signed="[signed-by=$keyring] "; fi
  echo "deb $signed${mirror:-http://deb.debian.org/debian} $release main"
}

# ensure_wine KIND: selects the first mode of running Windows programs that works: the machine's
# Wine, for both widths; Wine in a private root, for both widths; the machine's Wine, for 64-bit
# programs. Each is checked by running programs, and stored (tools/wine.sh). Tests go on without
# any; `./marl setup` tries the better modes again.
ensure_wine() {
  local missing=()
  if [[ -n ${MARL_WITNESS:-} ]]; then ensure_witness; return; fi
  if wine_remembered "$1"; then return; fi
  if [[ -z $WINE_TRIED ]] && wine_lacks "${WINE_PACKAGES[@]}" && may_install; then
    mapfile -t missing < <(missing_packages "${WINE_PACKAGES[@]}")
    install_together "${missing[@]}" || true
  fi
  if ! wine_lacks "${WINE_PACKAGES[@]}" && check_wine machine; then return; fi
  if root_ready "$PRIVATE_ROOT" || { may_install && make_private_root; }; then
    if check_wine root; then return; fi
  fi
  if wine_lacks "${WINE64_PACKAGES[@]}" && may_install; then
    apt_install "${WINE64_PACKAGES[@]}" || true
  fi
  if command -v wine >/dev/null && check_wine 64; then
    say "ONLY 64-BIT PROGRAMS RUN HERE: $WINE_NO_32"
    return
  fi
  wine_remember none
  [[ $1 == test ]] || fail "$WINE_NONE"
  say "NO WINDOWS PROGRAMS RUN HERE: $WINE_NONE"
}

# The newer Wine (./marl witness): its root, with programs of both widths running in it.
ensure_witness() {
  local place=$WINE_FOLDER/version
  { root_ready "$WITNESS_ROOT" || { may_install && make_witness_root; }; } ||
    fail "the root of the newer Wine could not be made; docs/BUILDING.md has what it needs"
  if [[ "$(cat "$place" 2>/dev/null)" == "$(wine_version)" ]]; then return; fi
  check_wine witness || fail "Windows programs do not run in $WITNESS_ROOT"
}

# True if one of these packages is not installed; false on a machine without Debian's packages.
wine_lacks() {
  command -v dpkg-query >/dev/null && [[ -n $(missing_packages "$@") ]]
}

# check_wine MODE: runs programs in this mode; if they run, stores it.
check_wine() {
  local answers wanted='=x86 =AMD64 '
  if [[ $1 == 64 ]]; then wanted='=AMD64 '; fi
  say "Checking that Windows programs run: ${WINE_MODES[$1]}"
  wine_use "$1"
  answers=$("${WINE_VIA[@]}" wine --version 2>&1 >/dev/null && wine_begin tests && wine_answers) ||
    true
  if [[ $(tr -d '\r' <<<"$answers" | sed -n 's/^PROC.*=/=/p' | tr '\n' ' ') == "$wanted" ]]; then
    wine_remember "$1"
  else
    say "They do not; the answer was '$answers'"
    return 1
  fi
}

# Prints what a 32-bit and a 64-bit program report about themselves. A 32-bit program reaches 64-bit
# ones as sysnative.
wine_answers() {
  if [[ $WINE_MODE == 64 ]]; then
    "${WINE_VIA[@]}" wine 'C:\windows\system32\cmd.exe' /c 'set PROCESSOR_ARCHITECTURE'
  else
    "${WINE_VIA[@]}" wine 'C:\windows\syswow64\cmd.exe' /c 'set PROCESSOR_ARCHITECTURE'
    "${WINE_VIA[@]}" wine 'C:\windows\syswow64\cmd.exe' /c \
      'C:\windows\sysnative\cmd.exe /c set PROCESSOR_ARCHITECTURE'
  fi
}
