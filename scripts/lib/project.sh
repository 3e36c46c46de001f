# shellcheck shell=bash
# Sourced by every script: strict mode, and the root of the project as the current directory.
set -euo pipefail
CDPATH='' cd -- "$(dirname "${BASH_SOURCE[0]}")/../.."

# A cache of compiled objects, if there is one, saves minutes in every script.
if command -v ccache >/dev/null; then
    export CMAKE_CXX_COMPILER_LAUNCHER="${CMAKE_CXX_COMPILER_LAUNCHER-ccache}"
fi

say() {
    printf '\n== %s\n' "$*"
}

# build PRESET [TARGET...]: configures and builds silently, unless something is wrong. Two at once take turns, which ninja
# does not ensure.
build() {
    local preset=$1 log
    shift
    mkdir -p build
    log="build/$preset.log"
    say "build $preset ${*:-everything}"
    # Not "if ! { … }": there bash would take a log that cannot be written for success.
    {
        flock 9 &&
            { cmake --preset "$preset" && cmake --build --preset "$preset" ${1:+--target "$@"}; } >"$log" 2>&1
    } 9>"build/$preset.lock" || {
        tail -n 60 "$log" || true
        return 1
    }
}
