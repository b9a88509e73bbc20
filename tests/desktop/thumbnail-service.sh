#!/usr/bin/env bash
# End to end through the desktop's thumbnail service: installs the project into a temporary
# prefix, starts tumbler on a private session bus and asks it for the thumbnail of a document.
#   thumbnail-service.sh BUILD_DIR unreadable|readable
# Exit status 77 is a skip (ctest's SKIP_RETURN_CODE), only where the service can't be installed.
set -euo pipefail

build=$1
kind=$2
here=$(cd "$(dirname "$0")" && pwd)

# shellcheck source=outcomes.sh
. "$here/outcomes.sh"

tumblerd=$(compgen -G '/usr/lib/*/tumbler-1/tumblerd' | head -n 1 || true)
[ -n "$tumblerd" ] || skip "the thumbnail service tumbler is not installed (scripts/install-deps.sh installs it)"
for tool in dbus-run-session update-mime-database; do
  command -v "$tool" >/dev/null || skip "$tool is not installed (scripts/install-deps.sh installs it)"
done
# Debian's interpreter, which the Debian bindings belong to, whatever else is first on the PATH.
python=/usr/bin/python3
"$python" -c 'import gi; gi.require_version("Gio", "2.0")' 2>/dev/null ||
  skip "python3-gi is not installed (scripts/install-deps.sh installs it)"

tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
prefix=$tmp/prefix
cmake --install "$build" --prefix "$prefix" >/dev/null

mkdir "$tmp/documents" "$tmp/probe" "$tmp/home" "$tmp/config" "$tmp/cache"
case $kind in
  unreadable)
    document=$tmp/documents/Broken.velmor
    echo "{ broken" >"$document"
    expected=Error
    ;;
  readable)
    document=$tmp/documents/Sample.velmor
    cp "$here/data/Sample.velmor" "$document"
    expected=Ready
    ;;
  *)
    fail "unknown case $kind"
    ;;
esac

# First the command alone, as a file browser's sandbox runs it: with no environment at all, and
# leaving nothing beside its output.
status=0
env -i "$prefix/bin/velmor-thumbnailer" -s 128 "$document" "$tmp/probe/out.png" 2>"$tmp/probe.log" || status=$?
left=$(ls -A "$tmp/probe")
if [ $expected = Error ]; then
  [ $status -ne 0 ] && [ -z "$left" ] || fail "the command answered $status and left '$left' for an unreadable document"
elif [ $status -ne 0 ]; then
  fail "the command can't render $document (exit status $status): $(cat "$tmp/probe.log")"
else
  [ "$left" = out.png ] || fail "the command left more than its output: $left"
fi

# Nothing of the user's home, configuration, cache or data may take part.
export HOME="$tmp/home" XDG_CONFIG_HOME="$tmp/config" XDG_CACHE_HOME="$tmp/cache"
export XDG_DATA_HOME="$tmp/home/.local/share" XDG_DATA_DIRS="$prefix/share:/usr/share" PATH="$prefix/bin:$PATH"
update-mime-database "$prefix/share/mime"
dbus-run-session -- "$python" "$here/thumbnail_service.py" "$tumblerd" "$document" "$expected"
