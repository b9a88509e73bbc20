#!/usr/bin/env bash
# The Debian package as `make deb` makes it, built here from the build folder: its control fields,
# its dependencies against the libraries the command really loads, its files, and the command
# unpacked into a throwaway root, drawing.
#   debian-package.sh BUILD_DIR
set -euo pipefail

build=$1
here=$(cd "$(dirname "$0")" && pwd)

# shellcheck source=outcomes.sh
. "$here/outcomes.sh"

for tool in cpack dpkg-deb dpkg-shlibdeps; do
  command -v "$tool" >/dev/null || fail "$tool is not installed (scripts/install-deps.sh installs dpkg-dev)"
done

tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
cpack -G DEB -B "$tmp" --config "$build/CPackConfig.cmake" >"$tmp/cpack.log" 2>&1 ||
  fail "cpack failed: $(cat "$tmp/cpack.log")"
version=$("$build/velmor-thumbnailer" --version | awk '{print $2}')
arch=$(dpkg --print-architecture)
deb=$tmp/velmor-thumbnailer_${version}_${arch}.deb
[ -f "$deb" ] || fail "no package named $(basename "$deb"): $(ls "$tmp")"

field() { dpkg-deb -f "$deb" "$1"; }
[ "$(field Package)" = velmor-thumbnailer ] || fail "the package is called $(field Package)"
[ "$(field Version)" = "$version" ] || fail "the package has version $(field Version), the command $version"
[ "$(field Architecture)" = "$arch" ] || fail "the package is for $(field Architecture)"

files=$(dpkg-deb -c "$deb" | awk '$1 !~ /^d/ {print $NF}' | sort | xargs)
expected="./usr/bin/velmor-proof ./usr/bin/velmor-thumbnailer ./usr/share/mime/packages/velmor-source.xml ./usr/share/thumbnailers/velmor.thumbnailer"
[ "$files" = "$expected" ] || fail "the package holds $files"

dpkg-deb -e "$deb" "$tmp/control"
grep -qx "activate-noawait /usr/share/mime/packages" "$tmp/control/triggers" ||
  fail "the package does not trigger the MIME database"

# Every shared library the command needs comes from a package the package depends on.
depends=" $(field Depends | tr -d ' ' | tr ',' '\n' | sed 's/(.*//' | xargs) "
case $depends in *" shared-mime-info "*) ;; *) fail "shared-mime-info is not among the dependencies: $depends" ;; esac
dpkg -x "$deb" "$tmp/root"
command=$tmp/root/usr/bin/velmor-thumbnailer
for library in $(objdump -p "$command" | awk '$1 == "NEEDED" {print $2}'); do
  # The filters read their whole input: one that stopped early would end the writer with SIGPIPE,
  # which pipefail and set -e turn into a silent exit whenever the writer is slower than the filter.
  path=$(ldconfig -p | awk -v l="$library" '$1 == l && !found {print $NF; found = 1}')
  [ -n "$path" ] || fail "$library is not on this machine"
  owner=$(dpkg -S "$(readlink -f "$path")" 2>/dev/null | sed -n '1s/:.*//p') ||
    owner=$(dpkg -S "$path" 2>&1 | sed -n '1s/:.*//p') || fail "no package holds $path: $owner"
  case $depends in *" $owner "*) ;; *) fail "$library comes from $owner, which is not among the dependencies: $depends" ;; esac
done

# The entry names the command the package holds, for the type the package defines.
entry=$tmp/root/usr/share/thumbnailers/velmor.thumbnailer
exec_command=$(sed -n 's/^Exec=\([^ ]*\).*/\1/p' "$entry")
[ -x "$tmp/root/usr/bin/$exec_command" ] || fail "the entry runs $exec_command, which the package does not hold"
mime_type=$(sed -n 's/^MimeType=\([^;]*\);*/\1/p' "$entry")
grep -q "type=\"$mime_type\"" "$tmp/root/usr/share/mime/packages/velmor-source.xml" ||
  fail "the entry is for $mime_type, which the package's MIME file does not define"

"$command" -s 64 "$here/data/Sample.velmor" "$tmp/out.png" || fail "the unpacked command can't draw"
[ "$(od -An -tu4 --endian=big -j16 -N8 "$tmp/out.png" | xargs)" = "64 60" ] || fail "the unpacked command drew a wrong picture"
echo "package $(basename "$deb"): depends on$depends"
