#!/usr/bin/env bash
# ./check --windows: builds for 64-bit and 32-bit Windows with mingw-w64, checks the two DLLs, and runs every test under
# wine. Without a wine that runs programs of these bits it says what is left out.
set -euo pipefail
cd "$(dirname "$0")/../.."
source cmake/require.sh
require cmake ninja python3 googletest x86_64-w64-mingw32-g++-posix i686-w64-mingw32-g++-posix

require wine || true
# Another architecture is not added to somebody's system: 32-bit wine is installed where the system takes it.
if command -v dpkg >/dev/null && dpkg --print-foreign-architectures | grep -qx i386; then
    require wine32 || true
fi

# Shows what does not pass, and the summary.
run_tests() {
    ctest --preset "$@" -j "$(nproc)" | grep -vE '^ *(Start +[0-9]+:|[0-9]+/[0-9]+ Test .* Passed )'
}

status=0
check() {
    local preset=$1 bits=$2
    echo "== $preset: build"
    quietly cmake --preset "$preset"
    quietly cmake --build --preset "$preset"
    echo "== $preset: tests"
    if command -v wine >/dev/null && ctest --preset "$preset" -R '^windows\.wine_works$' >/dev/null 2>&1; then
        run_tests "$preset" || status=1
        return
    fi
    # These look at the file and do not run it.
    run_tests "$preset" -R '^windows\.(dll|scripts)$' || status=1
    echo "*** SKIPPED: RUNNING THE $bits-BIT TESTS, WHICH NEEDS A WINE THAT RUNS $bits-BIT PROGRAMS ***" >&2
    if [ "$bits" = 32 ]; then
        echo "*** On Debian: dpkg --add-architecture i386 && apt-get update && apt-get install wine32:i386 ***" >&2
    else
        echo "*** On Debian: apt-get install wine wine64 ***" >&2
    fi
}

check windows 64
check windows-32 32
exit "$status"
