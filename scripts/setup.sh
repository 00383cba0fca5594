# Functions that the commands of this project share; to be sourced. Sets `root`, the project's folder,
# and `builds`, the folder of all builds. Answers --help by the comment that the command begins with.
set +o posix # bash started as sh
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)
builds=${FOUNDATION_JSON_BUILD_FOLDER:-$root/build}
[[ $builds == /* ]] || builds=$PWD/$builds

case ${1-} in
    -h | --help)
        sed -n '2,/^[^#]/s/^# //p' "$0"
        exit
        ;;
esac

# fail MESSAGE [STATUS]
fail() {
    echo "${0##*/}: $1" >&2
    exit "${2:-1}"
}

# misused MESSAGE refuses the command's arguments, and says how it is used.
misused() {
    fail "$1 ($(sed -n '2s/^# Usage/usage/p' "$0"))" 2
}

# takes_no_argument ARGUMENT...
takes_no_argument() {
    (($# == 0)) || misused "unknown argument '$1'"
}

# make_builds creates the folder of the builds.
make_builds() {
    { mkdir -p "$builds" && [[ -w $builds ]]; } 2>/dev/null ||
        fail "cannot write to $builds; FOUNDATION_JSON_BUILD_FOLDER may name another folder to build in"
}

# ---- What there is -------------------------------------------------------------------------

# What the library and the demonstration need, what the tests need in addition, and what they can do
# without.
build_needs=(compiler cmake ninja boost utf8proc fast_float)
test_needs=(gtest pkg-config localedef nm python3)
test_wishes=(gdb meson)

# The names of needs for people, and Debian's packages, where they have other names.
declare -rA need_names=([abidw]=libabigail [benchmark]="Google Benchmark" [boost]="Boost 1.74 or later"
    [cmake]="CMake 3.25 or later" [compiler]="a C++17 compiler" [ninja]=Ninja
    [gtest]="GoogleTest and GoogleMock 1.12 or later" [localedef]="localedef with sources")
declare -rA need_packages=([abidw]=abigail-tools [benchmark]=libbenchmark-dev [boost]=libboost-dev
    [clang++]=clang [compiler]=g++ [dpkg-buildflags]=dpkg-dev [fast_float]=libfast-float-dev
    [gtest]=libgmock-dev [llvm-symbolizer]=llvm [localedef]=locales
    [ninja]=ninja-build [nm]=binutils [utf8proc]=libutf8proc-dev
    [x86_64-w64-mingw32-g++-posix]=g++-mingw-w64-x86-64-posix)

# find_compiler sets `compiler` to the one that CXX names, or to the first that compiles C++17.
compiler=
find_compiler() {
    local candidate candidates=(g++ clang++ c++)
    [[ -z $compiler ]] || return 0
    [[ -z ${CXX-} ]] || candidates=("$CXX")
    for candidate in "${candidates[@]}"; do
        candidate=$(type -P "$candidate") || continue
        if "$candidate" -std=c++17 -fsyntax-only -x c++ - >/dev/null 2>&1 <<<'#include <optional>'; then
            compiler=$candidate
            return
        fi
    done
    [[ -z ${CXX-} ]] || fail "CXX names '$CXX', which does not compile C++17"
    return 1
}

# is_there NEED: whether a need other than a library is there: a program, or else a Debian package.
is_there() {
    local version
    case $1 in
        compiler) find_compiler ;;
        cmake)
            version=$(cmake --version 2>/dev/null | sed -n '1s/^cmake version \([0-9]*\.[0-9]*\).*/\1/p')
            [[ -n $version ]] && ((${version%.*} > 3 || (${version%.*} == 3 && ${version#*.} >= 25)))
            ;;
        localedef) [[ -e /usr/share/i18n/locales/de_DE ]] && type -P localedef ;;
        mkdocs-material) mkdocs build --help 2>/dev/null | grep -q material ;;
        ninja) type -P ninja || type -P ninja-build || type -P samu ;;
        *) type -P "$1" || dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null | grep -qx installed ;;
    esac >/dev/null
}

# probe_libraries NAME... prints those that can be used. A result stays valid while the library's
# header exists and the environment asks for the same settings.
probe_libraries() {
    local -r known=$builds/libraries
    local key name path unknown=()
    key="$compiler ${CMAKE_PREFIX_PATH-} ${BOOST_ROOT-} ${CXXFLAGS-} ${CPATH-}"
    [[ -f $known && $(head -n 1 "$known") == "$key" ]] || echo "$key" >"$known"
    for name; do
        path=$(sed -n "s/^$name //p" "$known" | tail -n 1)
        if [[ -n $path && -e $path ]]; then echo "$name"; else unknown+=("$name"); fi
    done
    ((${#unknown[@]})) || return 0
    rm -rf "$builds/probe"
    cmake -S "$root/cmake/probe" -B "$builds/probe" -G Ninja -DCMAKE_CXX_COMPILER="$compiler" \
        -DRESULT="$builds/probe.txt" -DWANTED="$(IFS=';' && echo "${unknown[*]}")" \
        >"$builds/probe.log" 2>&1 </dev/null ||
        fail "cannot look for libraries, see $builds/probe.log"
    cat "$builds/probe.txt" >>"$known"
    cut -d ' ' -f 1 "$builds/probe.txt"
}

# is_packaged LIBRARY: whether a Debian package of it is installed, of Boost one of any version: they
# conflict with each other.
is_packaged() {
    local package=${need_packages[$1]}
    [[ $1 != boost ]] || package='libboost[0-9]*-dev'
    dpkg-query -W -f '${db:Status-Status}\n' "$package" 2>/dev/null | grep -qx installed
}

# look_for NEED... sets `missing` to those that are not there. Without the tools to look for libraries,
# those count as missing of which there is no package, but only the tools are set in `installable`.
look_for() {
    local name found='' libraries=()
    missing=()
    for name; do
        case $name in
            boost | utf8proc | fast_float | gtest | benchmark) libraries+=("$name") ;;
            *) is_there "$name" || missing+=("$name") ;;
        esac
    done
    installable=("${missing[@]}")
    ((${#libraries[@]})) || return 0
    if is_there compiler && is_there cmake && is_there ninja; then
        found=$(probe_libraries "${libraries[@]}")
    else
        for name in "${libraries[@]}"; do
            ! is_packaged "$name" || found+=$name$'\n'
        done
    fi
    for name in "${libraries[@]}"; do
        grep -qxF "$name" <<<"$found" || missing+=("$name")
    done
    ((${#installable[@]})) || installable=("${missing[@]}")
}

# ---- What is installed ---------------------------------------------------------------------

# apt_install PACKAGE... tries to install packages. It does not remove or replace installed packages.
# If it fails, `obstacle` says why.
obstacle=
apt_updated=
apt_install() {
    local -r log=$builds/apt.log
    local as_root=()
    obstacle="cannot install packages without apt-get"
    type -P apt-get >/dev/null || return 0
    if ((EUID != 0)); then
        obstacle="cannot install packages, neither root nor sudo"
        type -P sudo >/dev/null || return 0
        # Without a terminal there is nobody to type a password.
        if [[ -t 0 ]]; then as_root=(sudo); else as_root=(sudo -n); fi
    fi
    obstacle="cannot install packages, see $log"
    if [[ -t 2 ]]; then echo "Installing $*" >&2; fi
    # Where the package lists are out of reach, those on the machine may still do.
    if [[ -z $apt_updated ]]; then
        apt_updated=yes
        "${as_root[@]}" apt-get -q update >"$log" 2>&1 </dev/null || true
    fi
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get -q install -y --no-install-recommends --no-remove --no-upgrade \
        -o DPkg::Lock::Timeout=120 "$@" >>"$log" 2>&1 </dev/null || true
}

# missing_text names what look_for found missing, with Debian's packages.
missing_text() {
    local name text=
    for name in "${missing[@]}"; do
        text+="${text:+, }${need_names[$name]-$name} (${need_packages[$name]-$name})"
    done
    echo "$text"
}

# provide NEED... looks for these, and installs what is missing, as far as possible: tools first, since
# they are needed to look for libraries.
provide() {
    local lock name wanted _
    make_builds
    # One at a time: two commands may be run at once, as in `scripts/demo | scripts/demo -`.
    exec {lock}>"$builds/needs.lock"
    flock "$lock"
    look_for "$@"
    for _ in tools libraries; do
        ((${#missing[@]})) || break
        wanted=()
        for name in "${installable[@]}"; do
            wanted+=("${need_packages[$name]-$name}")
        done
        apt_install "${wanted[@]}"
        look_for "$@"
    done
    exec {lock}>&-
}

# need NEED... fails unless all of these are there, or can be installed.
need() {
    provide "$@"
    ((${#missing[@]} == 0)) || fail "$obstacle; missing: $(missing_text)"
}

# wish NEED... continues without those that are not there and cannot be installed.
wish() {
    provide "$@"
    ((${#missing[@]} == 0)) || echo "${0##*/}: going on without $(missing_text): $obstacle" >&2
}

# ---- Building ------------------------------------------------------------------------------

# is_usable FOLDER COMPILER: whether the folder was configured for this project and compiler. A build
# folder that was copied along with the project cannot be used.
is_usable() {
    local -r cache=$1/CMakeCache.txt
    [[ -f $cache ]] || return 0
    grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$root" "$cache" || return 1
    [[ -z $2 ]] || grep -qx "CMAKE_CXX_COMPILER:[A-Z]*=\($2\|$(type -P "$2")\)" "$cache"
}

# The programs that hold nearly all tests.
test_programs="foundation_json_internal_tests foundation_json_tests foundation_json_parser_tests \
foundation_json_allocation_tests"

# build NAME TARGETS [SETTING...] configures the folder NAME of the builds, with settings and presets
# as cmake takes them, and builds targets in it. All output goes to standard error.
build() {
    local -r folder=$builds/$1 targets=$2
    shift 2
    local lock setting with=
    make_builds
    mkdir -p "${folder%/*}"
    exec {lock}>"$folder.lock"
    flock "$lock"
    for setting; do
        [[ $setting != -DCMAKE_CXX_COMPILER=* ]] || with=${setting#*=}
    done
    is_usable "$folder" "$with" || rm -rf "$folder"
    cmake -S "$root" -B "$folder" -G Ninja \
        -DCMAKE_CXX_COMPILER_LAUNCHER="$(type -P ccache || true)" \
        -DFOUNDATION_JSON_CORPUS="${FOUNDATION_JSON_CORPUS:-}" \
        -DFOUNDATION_JSON_PATCH_SUITE="${FOUNDATION_JSON_PATCH_SUITE:-}" "$@" >/dev/null
    # shellcheck disable=SC2086
    cmake --build "$folder" --target $targets >&2
    exec {lock}>&-
}

# run_tests NAME [OPTION...] runs the tests built in the folder NAME of the builds, with more options
# for ctest. Prints the begin of what each failing test says, and ctest's summary; the result of each test
# goes to tests.log there.
run_tests() {
    local -r folder=$builds/$1
    local -r log=$folder/tests.log
    local -r run=(ctest --test-dir "$folder" --output-on-failure --no-tests=error --no-label-summary
        --test-output-size-failed 4000 --parallel "$(nproc)" "${@:2}")
    if [[ -t 1 ]]; then
        "${run[@]}" --progress --output-log "$log"
    else
        "${run[@]}" 2>&1 | tee "$log" |
            grep --line-buffered -avE '^ +Start +[0-9]+: | Passed +[0-9.]+ sec *$|^$'
    fi
}
