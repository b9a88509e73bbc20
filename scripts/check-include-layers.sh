#!/bin/sh
# Headers point down: a header of src/ includes headers of its own folder and of lower folders
# only. Names every header that includes upward, and every folder missing from the order, and
# then fails. Source files are not checked: calls at run time go both ways.
#
#     scripts/check-include-layers.sh [SRC]      # SRC defaults to the project's src/
set -eu

# From the bottom up.
layers="platform geometry model outline interpolation reader thumbnail proof"
src=${1:-"$(dirname "$0")/../src"}

rank() {
    r=0
    for layer in $layers; do
        if [ "$layer" = "$1" ]; then
            echo "$r"
            return
        fi
        r=$((r + 1))
    done
    echo none
}

status=0
for dir in "$src"/*/; do
    folder=$(basename "$dir")
    if [ "$(rank "$folder")" = none ]; then
        echo "$folder/: not in the order of folders ($layers)"
        status=1
    fi
done

for header in $(cd "$src" && find . -name '*.h' | sed 's|^\./||' | sort); do
    own=$(rank "${header%%/*}")
    [ "$own" = none ] && continue
    for included in $(sed -n 's|^[[:space:]]*#[[:space:]]*include[[:space:]]*"\([^"]*/[^"]*\)".*|\1|p' "$src/$header"); do
        theirs=$(rank "${included%%/*}")
        if [ "$theirs" != none ] && [ "$theirs" -gt "$own" ]; then
            echo "$header includes $included, which lies above it"
            status=1
        fi
    done
done
exit "$status"
