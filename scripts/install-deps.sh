#!/usr/bin/env bash
# Installs the Debian packages the build, the tests and the benchmarks need.
# Does nothing when they are all present.
set -euo pipefail

packages=(
  build-essential cmake pkg-config
  libcairo2-dev zlib1g-dev libplist-dev libicu-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  clang libclang-rt-14-dev libfuzzer-14-dev bubblewrap
  tumbler dbus dbus-bin shared-mime-info python3-gi gir1.2-gnomedesktop-3.0
  dpkg-dev
)

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "installing: ${missing[*]}"
sudo_cmd=()
[ "$(id -u)" -ne 0 ] && sudo_cmd=(sudo)
"${sudo_cmd[@]}" apt-get update -qq
DEBIAN_FRONTEND=noninteractive "${sudo_cmd[@]}" apt-get install -y -qq "${missing[@]}"
