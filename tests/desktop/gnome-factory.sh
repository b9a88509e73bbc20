#!/usr/bin/env bash
# End to end through GNOME's own thumbnail factory, the code that GNOME Files runs: it finds the
# installed thumbnailer entry, runs the command inside its bubblewrap and seccomp sandbox and
# caches the picture.
#   gnome-factory.sh BUILD_DIR unreadable|readable
# Exit status 77 is a skip (ctest's SKIP_RETURN_CODE), only where bubblewrap can't run.
#
# The factory's sandbox shows the command nothing of the file system but /usr (and a few files of
# /etc), so a command installed under a temporary prefix would not be found inside it. Instead
# the test enters a private mount namespace, lays an empty tmpfs over /usr/local there and
# installs into that: the command stands where `make install` puts it, inside what the sandbox
# binds, and the machine's own /usr/local is neither seen nor touched.
set -euo pipefail

build=$1
kind=$2
here=$(cd "$(dirname "$0")" && pwd)

# shellcheck source=outcomes.sh
. "$here/outcomes.sh"

if [ "${VELMOR_PRIVATE_MOUNTS:-}" != 1 ]; then
  command -v bwrap >/dev/null || skip "bwrap is not installed (scripts/install-deps.sh installs bubblewrap)"
  bwrap --ro-bind / / --unshare-all true 2>/dev/null || skip "bwrap can't create its namespaces on this machine"
  for tool in unshare update-mime-database; do
    command -v "$tool" >/dev/null || fail "$tool is not installed (scripts/install-deps.sh installs it)"
  done
  /usr/bin/python3 -c 'import gi; gi.require_version("GnomeDesktop", "3.0")' 2>/dev/null ||
    fail "GNOME's thumbnail factory is not installed (scripts/install-deps.sh installs gir1.2-gnomedesktop-3.0)"
  # Root may make the namespace directly; anyone else through a user namespace of their own.
  as_root=()
  [ "$(id -u)" -eq 0 ] || as_root=(--map-root-user)
  VELMOR_PRIVATE_MOUNTS=1 exec unshare --mount --propagation private "${as_root[@]}" -- "$0" "$@"
fi

mount -t tmpfs velmor-test /usr/local || fail "can't lay a tmpfs over /usr/local in the private namespace"
cmake --install "$build" --prefix /usr/local >/dev/null
update-mime-database /usr/local/share/mime

tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
mkdir "$tmp/documents" "$tmp/home" "$tmp/config" "$tmp/cache"
case $kind in
  unreadable)
    document=$tmp/documents/Broken.velmor
    echo "{ broken" >"$document"
    ;;
  readable)
    document=$tmp/documents/Sample.velmor
    cp "$here/data/Sample.velmor" "$document"
    ;;
  *)
    fail "unknown case $kind"
    ;;
esac

export HOME="$tmp/home" XDG_CONFIG_HOME="$tmp/config" XDG_CACHE_HOME="$tmp/cache"
export XDG_DATA_HOME="$tmp/home/.local/share" XDG_DATA_DIRS=/usr/local/share:/usr/share
# LeakSanitizer stops the process's threads with ptrace, which the factory's seccomp filter
# forbids; a sanitized command leaves its leak check to the other tests.
export ASAN_OPTIONS=detect_leaks=0
/usr/bin/python3 "$here/gnome_factory.py" "$document" "$kind"
