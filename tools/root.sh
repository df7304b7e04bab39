# A private Debian root with Wine of both widths, for machines whose packages conflict with it. Made
# from the main index alone, so that the libraries of both architectures have the same versions.
# Sourced by ./marl.

PRIVATE_ROOT=${MARL_ROOT:-${XDG_CACHE_HOME:-$HOME/.cache}/marl/root}
PRIVATE_ROOT_MEGABYTES=2500

# True if the root exists and is complete, with a mount point for this checkout.
private_root_ready() {
  [[ -f $PRIVATE_ROOT/marl-ready && -d $PRIVATE_ROOT$ROOT ]]
}

# make_private_root PACKAGE...: creates it if necessary; says why if it cannot.
make_private_root() {
  local fresh=$PRIVATE_ROOT.new free
  if [[ ! -f $PRIVATE_ROOT/marl-ready ]]; then
    free=$(as_root unshare --mount --propagation private true 2>&1) || {
      say "No private root: nothing can be mounted here, as in a container without that right ($free)"
      return 1
    }
    mkdir -p "${PRIVATE_ROOT%/*}"
    free=$(df --output=avail -m "${PRIVATE_ROOT%/*}" | tail -1)
    ((free >= PRIVATE_ROOT_MEGABYTES)) || {
      say "No private root: it needs $PRIVATE_ROOT_MEGABYTES MB in ${PRIVATE_ROOT%/*}," \
          "there are $((free)); MARL_ROOT=FOLDER puts it elsewhere"
      return 1
    }
    [[ -z $(missing_packages mmdebstrap mount) ]] || apt_install mmdebstrap mount || {
      say "No private root: mmdebstrap and mount could not be installed"
      return 1
    }
    say "Making a private root with Wine of both widths in $PRIVATE_ROOT"
    as_root rm -rf --one-file-system "$fresh"
    fill_private_root "$fresh" "$@" || {
      as_root rm -rf --one-file-system "$fresh"
      say "No private root: mmdebstrap failed"
      return 1
    }
    as_root rm -rf --one-file-system "$PRIVATE_ROOT"
    as_root mv "$fresh" "$PRIVATE_ROOT"
  fi
  [[ -d $PRIVATE_ROOT$ROOT ]] || as_root mkdir -p "$PRIVATE_ROOT$ROOT"
}

# fill_private_root FOLDER PACKAGE...
fill_private_root() {
  local folder=$1 work status=0 packages
  shift
  packages=$(IFS=,; echo "$*")
  work=$(mktemp -d)
  chmod 755 "$work"
  main_source >"$work/sources.list"
  # The root uses the machine's way to reach the index, such as a proxy.
  apt-config dump | sed -n '/^Acquire::.* "..*";$/p' >"$work/apt.conf"
  echo 'APT::Install-Recommends "false";' >>"$work/apt.conf"
  as_root mmdebstrap --quiet --variant=apt --architectures=amd64,i386 --include="$packages" \
    --aptopt="$work/apt.conf" "$(release_name)" "$folder" "$work/sources.list" &&
    echo '127.0.0.1 localhost' | as_root tee "$folder/etc/hosts" >/dev/null &&
    as_root touch "$folder/marl-ready" || status=$?
  rm -rf "$work"
  return $status
}
