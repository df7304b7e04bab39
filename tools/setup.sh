# Sets a Debian machine up. Sourced by ./marl.

BUILD_PACKAGES=(cmake ninja-build g++ g++-mingw-w64-i686-posix g++-mingw-w64-x86-64-posix
                librsvg2-bin libgtest-dev libgmock-dev googletest)
RUN_PACKAGES=(wine wine64 wine32:i386 fonts-wine fonts-liberation xvfb xauth x11-utils xdotool
              imagemagick)
BENCH_PACKAGES=(libbenchmark-dev librapidxml-dev libpugixml-dev libexpat1-dev libicu-dev
                libcairo2-dev fd-find)
COVERAGE_PACKAGES=(gcovr)
FUZZ_PACKAGES=(clang libclang-rt-14-dev)

# Prints those of the given packages that are not installed.
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

# ensure_packages KIND: installs what the kind of work needs and is not there.
# Without the packages to run Windows programs, building still goes on.
ensure_packages() {
  local wanted=() missing
  case $1 in
    build) wanted=("${BUILD_PACKAGES[@]}") ;;
    bench) wanted=("${BUILD_PACKAGES[@]}" "${RUN_PACKAGES[@]}" "${BENCH_PACKAGES[@]}") ;;
    coverage) wanted=("${BUILD_PACKAGES[@]}" "${COVERAGE_PACKAGES[@]}") ;;
    fuzz) wanted=("${BUILD_PACKAGES[@]}" "${FUZZ_PACKAGES[@]}") ;;
    *) wanted=("${BUILD_PACKAGES[@]}" "${RUN_PACKAGES[@]}") ;;
  esac
  if ! command -v dpkg-query >/dev/null; then
    check_commands "$1"
    return
  fi
  mapfile -t missing < <(missing_packages "${wanted[@]}")
  if ((${#missing[@]})); then
    # Build and run packages come together even if only building is asked for: a later install
    # from another state of the index could ask for other versions of shared libraries.
    mapfile -t missing < <(missing_packages "${wanted[@]}" "${BUILD_PACKAGES[@]}" \
                           "${RUN_PACKAGES[@]}" | sort -u)
    if [[ $(id -u) != 0 ]] && ! command -v sudo >/dev/null; then
      fail "these packages are missing, and installing them needs root: ${missing[*]}
  dpkg --add-architecture i386 && apt-get update && apt-get install ${missing[*]}"
    fi
    install_packages "${missing[@]}"
    mapfile -t missing < <(missing_packages "${wanted[@]}")
    if ((${#missing[@]})); then
      fail "could not be installed: ${missing[*]}"
    fi
  fi
  case $1 in
    build | coverage | fuzz) ;;
    *) check_wine ;;
  esac
}

# On a machine without Debian's package tools: tells which programs are missing.
check_commands() {
  local name names=(cmake ninja g++ i686-w64-mingw32-g++-posix x86_64-w64-mingw32-g++-posix) gone=()
  if [[ $1 != build ]]; then names+=(wine Xvfb xdotool xwininfo import); fi
  for name in "${names[@]}"; do
    command -v "$name" >/dev/null || gone+=("$name")
  done
  ((${#gone[@]} == 0)) || fail "these programs are missing: ${gone[*]}"
}

install_packages() {
  say "Installing: $*"
  export DEBIAN_FRONTEND=noninteractive
  if [[ " $* " == *:i386\ * && " $(dpkg --print-foreign-architectures) " != *i386* ]]; then
    as_root dpkg --add-architecture i386
  fi
  if as_root apt-get update && apt_install "$@"; then return; fi
  say "The package index is not whole; trying with the main index alone"
  if one_index_install "$@"; then return; fi
  # Wine is what asks for a second architecture; without it the programs can still be built.
  local name rest=()
  for name in "$@"; do
    case $name in wine*) ;; *) rest+=("$name") ;; esac
  done
  if ((${#rest[@]} && ${#rest[@]} < $#)); then
    say "Installing all but Wine"
    apt_install "${rest[@]}" || one_index_install "${rest[@]}" || true
  fi
}

# apt_install PACKAGE...; extra options of apt-get stand in APT_OPTIONS.
APT_OPTIONS=()
apt_install() {
  as_root env DEBIAN_FRONTEND=noninteractive apt-get "${APT_OPTIONS[@]}" install -y --no-remove \
    --no-install-recommends -o Dpkg::Use-Pty=0 "$@"
}

# Installs from one index only, kept apart from the machine's own lists, so that the libraries of
# both architectures have the same versions.
one_index_install() {
  local place status=0 keyring=/usr/share/keyrings/debian-archive-keyring.gpg signed=
  place=$(mktemp -d)
  chmod 755 "$place"
  mkdir -p "$place/lists/partial"
  if [[ -f $keyring ]]; then signed="[signed-by=$keyring] "; fi
  echo "deb $signed$(main_mirror) $(. /etc/os-release && echo "$VERSION_CODENAME") main" \
    >"$place/sources.list"
  cat "$place/sources.list"
  APT_OPTIONS=(-o "Dir::Etc::sourcelist=$place/sources.list" -o Dir::Etc::sourceparts=/dev/null
               -o "Dir::State::Lists=$place/lists" -o "Dir::Cache::pkgcache=$place/pkgcache.bin"
               -o "Dir::Cache::srcpkgcache=$place/srcpkgcache.bin")
  as_root apt-get "${APT_OPTIONS[@]}" update && apt_install "$@" || status=$?
  APT_OPTIONS=()
  as_root rm -rf "$place"
  return $status
}

# The address of the distribution's main index, as this machine has it configured.
main_mirror() {
  local release
  release=$(. /etc/os-release && echo "$VERSION_CODENAME")
  apt-get indextargets --format '$(RELEASE) $(COMPONENT) $(REPO_URI)' \
              'Created-By: Packages' 2>/dev/null |
    awk -v r="$release" '($1 == r || $1 == "stable") && $2 == "main" { print $3 }' |
    sort -u | { grep -m1 '/debian/*$' || true; }
}

# Checks, once for each installed Wine, that programs of both widths run.
check_wine() {
  local stamp=build/wine/checked version
  version=$(wine --version)
  if [[ -f $stamp && $(<"$stamp") == "$version" ]]; then return; fi
  say "Checking that 32-bit and 64-bit programs run under Wine"
  local answers
  answers=$(wine_begin tests
            wine_answers) || exit 1
  answers=$(tr -d '\r' <<<"$answers" | tr '\n' ' ')
  [[ $answers == *=x86\ *=AMD64\ * ]] ||
    fail "32-bit and 64-bit programs do not both run under Wine (answer: '$answers');
  needed are the packages wine wine64 wine32:i386"
  echo "$version" >"$stamp"
}

# What a 32-bit and a 64-bit program say of themselves. A 32-bit one reaches the others by the name
# sysnative.
wine_answers() {
  wine 'C:\windows\syswow64\cmd.exe' /c 'set PROCESSOR_ARCHITECTURE'
  wine 'C:\windows\syswow64\cmd.exe' /c \
    'C:\windows\sysnative\cmd.exe /c set PROCESSOR_ARCHITECTURE'
}
