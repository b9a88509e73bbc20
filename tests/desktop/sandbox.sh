#!/usr/bin/env bash
# Runs the installed command the way a file browser's sandbox does: read-only system, the input
# read-only, only the output folder writable, no network, limited memory.
#   sandbox.sh BUILD_DIR
# Exit status 77 is a skip (ctest's SKIP_RETURN_CODE), where bubblewrap is missing or can't run.
set -euo pipefail

build=$1
here=$(cd "$(dirname "$0")" && pwd)

# shellcheck source=outcomes.sh
. "$here/outcomes.sh"

command -v bwrap >/dev/null || skip "bwrap is not installed (scripts/install-deps.sh installs bubblewrap)"
bwrap --ro-bind / / --unshare-all true 2>/dev/null ||
  skip "bwrap can't create its namespaces on this machine"

tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
cmake --install "$build" --prefix "$tmp/prefix" >/dev/null
tool=$tmp/prefix/bin/velmor-thumbnailer
mkdir "$tmp/out"
document=$tmp/Sample.velmor
cp "$here/data/Sample.velmor" "$document"

# AddressSanitizer reserves terabytes of address space, which an address-space limit refuses; a
# sanitized build is held to the same memory by the sanitizer's own limit instead.
limit=(prlimit --as=$((512 * 1024 * 1024)))
if grep -qa __asan_init "$tool"; then
  limit=(env ASAN_OPTIONS=hard_rss_limit_mb=512)
fi

bwrap --ro-bind / / --dev /dev --proc /proc --tmpfs /tmp --bind "$tmp/out" "$tmp/out" \
  --ro-bind "$tmp/prefix" "$tmp/prefix" --ro-bind "$document" "$document" --unshare-all --die-with-parent \
  "${limit[@]}" "$tool" -s 128 "$document" "$tmp/out/thumbnail.png" ||
  fail "the command failed in the sandbox"

[ -f "$tmp/out/thumbnail.png" ] || fail "no thumbnail was written"
# Width and height of the PNG header: the longer side fills the requested size.
size=$(od -An -tu4 --endian=big -j16 -N8 "$tmp/out/thumbnail.png" | xargs)
[ "$size" = "128 119" ] || fail "the thumbnail is $size pixels, not 128 119"
echo "sandboxed thumbnail: $size"
