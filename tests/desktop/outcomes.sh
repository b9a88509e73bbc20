# The outcomes of the desktop test scripts, which source this file. Exit status 77 is ctest's
# SKIP_RETURN_CODE.

skip() {
  echo "skipped: $*"
  exit 77
}

fail() {
  echo "FAILED: $*"
  exit 1
}
