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

# Under set -e a failing command ends the script, often without a word of its own: name it, so that
# a failure on a machine we can't look at says where it happened.
trap 'status=$?; echo "FAILED: line $LINENO: $BASH_COMMAND (exit $status)"' ERR
