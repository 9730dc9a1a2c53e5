# Sourced by the scripts in the root. Installs the Debian packages behind what is missing, as root; otherwise
# says what is missing. Quiet when nothing is. Also runs commands quietly.

# require NAME... : each name is one of those below.
require() {
    local name package missing=()
    for name in "$@"; do
        is_present "$name" || missing+=("$(package_of "$name")")
    done
    [ ${#missing[@]} -eq 0 ] && return 0

    package="${missing[*]}"
    if [ "$(id -u)" -ne 0 ] || ! command -v apt-get >/dev/null; then
        echo "Missing: $package" >&2
        echo "On Debian: sudo apt-get install $package" >&2
        return 1
    fi
    echo "Installing: $package"
    export DEBIAN_FRONTEND=noninteractive
    apt-get update -qq >/dev/null && apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

has_header() {
    echo "#include <$1>" | g++ -E -x c++ - >/dev/null 2>&1
}

is_present() {
    case "$1" in
        gtest) has_header gtest/gtest.h ;;
        benchmark) has_header benchmark/benchmark.h ;;
        orocos-kdl) has_header kdl/config.h ;;
        libfuzzer) [ -e "$(clang++ -print-resource-dir 2>/dev/null)/lib/linux/libclang_rt.fuzzer-$(uname -m).a" ] ;;
        googletest) [ -e /usr/src/googletest/CMakeLists.txt ] ;;
        wine32) [ -x /usr/lib/wine/wine ] ;;
        mpmath) /usr/bin/python3 -c 'import mpmath' >/dev/null 2>&1 ;;
        cli11) has_header CLI/CLI.hpp ;;
        nlohmann-json) has_header nlohmann/json.hpp ;;
        eigen) has_header eigen3/Eigen/Geometry ;;
        scipy) /usr/bin/python3 -c 'import scipy' >/dev/null 2>&1 ;;
        cli11) has_header CLI/CLI.hpp ;;
        nlohmann-json) has_header nlohmann/json.hpp ;;
        pytest | numpy | jsonschema | pip | setuptools | wheel) /usr/bin/python3 -c "import $1" >/dev/null 2>&1 ;;
        venv) /usr/bin/python3 -c 'import ensurepip' >/dev/null 2>&1 ;;
        *) command -v "$1" >/dev/null ;;
    esac
}

package_of() {
    case "$1" in
        ninja) echo ninja-build ;;
        clang++) echo clang ;;
        abidiff) echo abigail-tools ;;
        dpkg-shlibdeps) echo dpkg-dev ;;
        gtest) echo libgtest-dev ;;
        benchmark) echo libbenchmark-dev ;;
        libfuzzer) echo libclang-rt-dev ;;
        orocos-kdl) echo liborocos-kdl-dev ;;
        mpmath) echo python3-mpmath ;;
        cli11) echo libcli11-dev ;;
        nlohmann-json) echo nlohmann-json3-dev ;;
        eigen) echo libeigen3-dev ;;
        scipy) echo python3-scipy ;;
        mcs) echo mono-mcs ;;
        cli11) echo libcli11-dev ;;
        nlohmann-json) echo nlohmann-json3-dev ;;
        mono) echo mono-runtime ;;
        pytest | numpy | jsonschema | pip | setuptools | wheel | venv) echo "python3-$1" ;;
        wine32) echo wine32:i386 ;;
        *-w64-mingw32-g++-posix) echo "g++-mingw-w64-${1%%-w64*}-posix" | tr _ - ;;
        *) echo "$1" ;;
    esac
}

# Runs a command and shows its output only when it fails.
quietly() {
    local log
    log=$(mktemp)
    if ! "$@" >"$log" 2>&1; then
        cat "$log" >&2
        rm -f "$log"
        return 1
    fi
    rm -f "$log"
}
