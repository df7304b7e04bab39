# Private Debian roots with Wine of both widths. Sourced by ./marl.
#
#   PRIVATE_ROOT   this machine's release, for machines whose packages conflict with Wine's
#   WITNESS_ROOT   the next release, whose Wine is newer (./marl witness)
#
# Each is made from one index alone, so that the libraries of both architectures have the same
# versions.

PRIVATE_ROOT=${MARL_ROOT:-${XDG_CACHE_HOME:-$HOME/.cache}/marl/root}
PRIVATE_ROOT_MEGABYTES=2500
WITNESS_ROOT=${MARL_WITNESS_ROOT:-${XDG_CACHE_HOME:-$HOME/.cache}/marl/witness}
WITNESS_ROOT_MEGABYTES=3500
WITNESS_RELEASE=trixie
# The libraries that Wine loads only if they are there: for windows and for fonts.
WITNESS_LIBRARIES=(libx11-6 libxext6 libxrandr2 libxcursor1 libxi6 libxfixes3 libxrender1
                   libxcomposite1 libxinerama1 libfreetype6 libfontconfig1)

# root_ready ROOT: true if it exists and is complete, with a mount point for this checkout.
root_ready() {
  [[ -f $1/marl-ready && -d $1$ROOT ]]
}

# make_root ROOT RELEASE MEGABYTES PACKAGE...: creates it if necessary; says why if it cannot.
make_root() {
  local place=$1 release=$2 megabytes=$3 fresh=$1.new free
  shift 3
  if [[ ! -f $place/marl-ready ]]; then
    free=$(as_root unshare --mount --propagation private true 2>&1) || {
      say "No private root: nothing can be mounted here, as in a container without that right ($free)"
      return 1
    }
    mkdir -p "${place%/*}"
    free=$(df --output=avail -m "${place%/*}" | tail -1)
    ((free >= megabytes)) || {
      say "No private root: it needs $megabytes MB in ${place%/*}," \
          "there are $((free)); MARL_ROOT=FOLDER or MARL_WITNESS_ROOT=FOLDER puts it elsewhere"
      return 1
    }
    [[ -z $(missing_packages mmdebstrap mount) ]] || apt_install mmdebstrap mount || {
      say "No private root: mmdebstrap and mount could not be installed"
      return 1
    }
    say "Making a private root with Wine of both widths ($release) in $place"
    as_root rm -rf --one-file-system "$fresh"
    fill_root "$fresh" "$release" "$@" || {
      as_root rm -rf --one-file-system "$fresh"
      say "No private root: mmdebstrap failed"
      return 1
    }
    as_root rm -rf --one-file-system "$place"
    as_root mv "$fresh" "$place"
  fi
  [[ -d $place$ROOT ]] || as_root mkdir -p "$place$ROOT"
}

# fill_root FOLDER RELEASE PACKAGE...
fill_root() {
  local folder=$1 release=$2 work status=0 packages
  shift 2
  packages=$(IFS=,; echo "$*")
  work=$(mktemp -d)
  chmod 755 "$work"
  main_source "$release" >"$work/sources.list"
  # The root uses the machine's way to reach the index, such as a proxy.
  apt-config dump | sed -n '/^Acquire::.* "..*";$/p' >"$work/apt.conf"
  echo 'APT::Install-Recommends "false";' >>"$work/apt.conf"
  as_root mmdebstrap --quiet --variant=apt --architectures=amd64,i386 --include="$packages" \
    --aptopt="$work/apt.conf" "$release" "$folder" "$work/sources.list" &&
    echo '127.0.0.1 localhost' | as_root tee "$folder/etc/hosts" >/dev/null &&
    as_root touch "$folder/marl-ready" || status=$?
  rm -rf "$work"
  return $status
}

# The private root for this machine's tests.
make_private_root() {
  make_root "$PRIVATE_ROOT" "$(release_name)" "$PRIVATE_ROOT_MEGABYTES" \
    "${WINE_PACKAGES[@]}" "${WINE_FONTS[@]}"
}

# The root with the newer Wine.
make_witness_root() {
  local libraries=("${WITNESS_LIBRARIES[@]}" "${WITNESS_LIBRARIES[@]/%/:i386}")
  make_root "$WITNESS_ROOT" "$WITNESS_RELEASE" "$WITNESS_ROOT_MEGABYTES" \
    "${WINE_PACKAGES[@]}" "${WINE_FONTS[@]}" "${libraries[@]}"
}
