#!/usr/bin/env bash
# in_root.sh ROOT CHECKOUT COMMAND [ARG...]: runs a command in the private root (tools/root.sh), in
# the same folder, with the same process id and as the same user.
#
# /proc, /sys, /dev, /tmp and the checkout are bound into it in a private mount namespace: the
# mounts are invisible to other processes and vanish with the command, so deleting the root deletes
# nothing else. An ordinary user gets there through a user namespace, or else through sudo.
set -euo pipefail

enter() {
  local root=$1 checkout=$2 owner=$3 part
  shift 3
  for part in /proc /dev /tmp "$checkout"; do mount --rbind "$part" "$root$part"; done
  mount --rbind /sys "$root/sys" 2>/dev/null || true
  export PATH=/usr/local/bin:/usr/bin:/bin:/usr/sbin:/sbin LC_ALL=C.UTF-8
  [[ -d $root$HOME ]] || export HOME=/tmp
  # shellcheck disable=SC2016
  exec chroot ${owner:+--userspec="$owner"} "$root" \
    /bin/sh -c 'cd "$0" && exec "$@"' "$(pwd -P)" "$@"
}

case $1 in
  --bound) shift; enter "$@" ;;
esac
SELF=$(readlink -f "$0")
ROOT=$1 CHECKOUT=$2
shift 2
if [[ $(id -u) == 0 ]]; then
  exec unshare --mount --propagation private "$SELF" --bound "$ROOT" "$CHECKOUT" '' "$@"
fi
AS_USER=(unshare --user --map-current-user --keep-caps --mount --propagation private)
if "${AS_USER[@]}" true 2>/dev/null; then
  exec "${AS_USER[@]}" "$SELF" --bound "$ROOT" "$CHECKOUT" '' "$@"
fi
mapfile -d '' -t environment < <(env -0)
exec sudo env "${environment[@]}" unshare --mount --propagation private \
  "$SELF" --bound "$ROOT" "$CHECKOUT" "$(id -u):$(id -g)" "$@"
