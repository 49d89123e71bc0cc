# Shared by the scripts of this folder: where the project is, and how a step is announced.
# shellcheck shell=bash
set -euo pipefail

project=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$project"

# shellcheck disable=SC2034 # read by the scripts that source this file
jobs=${JOBS:-$(nproc)}

say() { printf '\n== %s\n' "$*"; }
fail() {
    printf '%s: %s\n' "$(basename "$0")" "$*" >&2
    exit 1
}

# Runs a command as root: directly, or through sudo.
as_root() {
    if [ "$(id -u)" = 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        fail "needs root (or sudo) to install packages"
    fi
}
