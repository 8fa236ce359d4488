# shellcheck shell=sh
# What the scripts share; they source it.

# What it takes to build, and what checks and tests take on top, as Debian and Ubuntu call it.
# shellcheck disable=SC2034 # used by the scripts
build_packages='cmake ninja-build g++ git python3 qtbase5-dev libcli11-dev rapidjson-dev
    libudunits2-dev libgtest-dev libbenchmark-dev'
# shellcheck disable=SC2034
check_packages='clang-format clang-tidy'
# The tests validate JSON, draw graphs and look at their page in a browser.
# shellcheck disable=SC2034
test_packages='python3-jsonschema graphviz chromium chromium-driver'

say() {
    printf '%s\n' "$*" >&2
}

# Prints those of the packages $@ that are missing. A tool that can be called is not missing,
# wherever it came from, nor is what Python can import.
missing_packages() {
    for package in "$@"; do
        case $package in
            python3-*)
                python3 -c "import ${package#python3-}" 2>/dev/null || printf '%s ' "$package"
                continue
                ;;
            cmake | git | python3 | clang-format | clang-tidy | chromium) tool=$package ;;
            chromium-driver) tool=chromedriver ;;
            graphviz) tool=dot ;;
            ninja-build) tool=ninja ;;
            g++) tool=c++ ;;
            *) tool= ;;
        esac
        if [ -n "$tool" ]; then
            command -v "$tool" >/dev/null || printf '%s ' "$package"
        else
            dpkg-query -W -f '${db:Status-Status}\n' "$package" 2>/dev/null |
                grep -qx installed || printf '%s ' "$package"
        fi
    done
}

# Installs what is missing of the packages $@. Elsewhere than on Debian and Ubuntu only says what is
# needed: libraries that are missing there show when CMake looks for them.
install_missing() {
    if ! command -v apt-get >/dev/null || ! command -v dpkg-query >/dev/null; then
        say 'No apt-get here, so nothing is installed. Needed are CMake 3.22, Ninja, a C++17'
        say 'compiler, Git, Python 3, Qt 5.15 (Core), CLI11, RapidJSON, UDUNITS-2, GoogleTest and'
        say 'Google Benchmark; for scripts/check also clang-format and clang-tidy; for scripts/test'
        say 'also Graphviz, Chromium with its chromedriver, and the package jsonschema of Python.'
        return
    fi

    missing=$(missing_packages "$@")
    [ -n "$missing" ] || return 0

    say "Installing with apt-get: $missing"
    as_root=
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null; then
            say "That needs root and there is no sudo. As root, run: apt-get install $missing"
            exit 2
        fi
        as_root=sudo
    fi
    # shellcheck disable=SC2086 # both are lists of words
    quietly $as_root env DEBIAN_FRONTEND=noninteractive apt-get -q -o Acquire::Retries=3 update
    # shellcheck disable=SC2086
    quietly $as_root env DEBIAN_FRONTEND=noninteractive apt-get -q -o Acquire::Retries=3 \
        -o DPkg::Lock::Timeout=300 install -y --no-install-recommends $missing
}

# Runs the command $@ and shows what it printed only when it fails, which ends the script.
quietly() {
    log=$(mktemp)
    status=0
    "$@" >"$log" 2>&1 || status=$?
    [ "$status" -eq 0 ] || cat "$log" >&2
    rm -f "$log"
    [ "$status" -eq 0 ] && return

    say "Failed with status $status: $*"
    exit "$status"
}
