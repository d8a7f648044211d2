# shellcheck shell=bash
# For the tests of our checks: each must pass what is right, and fail, and say why, what is not. Sourced; what a test
# writes goes below $scratch.
set -euo pipefail
export LC_ALL=C

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

unexpected() {
    echo "$1" >&2
    cat "$scratch/said" >&2
    exit 1
}

# passes COMMAND...
passes() {
    "$@" >"$scratch/said" 2>&1 || unexpected "failed with $?: $*"
}

# fails_saying STATUS TEXT COMMAND...: TEXT is a whole line of what the command prints.
fails_saying() {
    local status=0
    "${@:3}" >"$scratch/said" 2>&1 || status=$?
    [ "$status" -eq "$1" ] || unexpected "ended with $status and not with $1: ${*:3}"
    grep -qxF -e "$2" "$scratch/said" || unexpected "did not say '$2': ${*:3}"
}
