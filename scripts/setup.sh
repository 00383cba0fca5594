# Functions that the commands of this project share; to be sourced. Sets `root`, the project's folder,
# and `builds`, the folder of all builds. Prints almost nothing if there is nothing to do.
set +o posix # bash started as sh
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)
builds=${FOUNDATION_JSON_BUILD_FOLDER:-$root/build}
[[ $builds == /* ]] || builds=$PWD/$builds

# What the library and the demonstration need, what the tests need in addition, and what they can do
# without.
build_needs=(compiler cmake ninja boost icu fast_float)
test_needs=(gtest pkg-config localedef nm python3)
test_wishes=(gdb meson)

# Per line: a need, its name for people, and its Debian package.
readonly known_needs="\
abidw        | libabigail               | abigail-tools
benchmark    | Google Benchmark         | libbenchmark-dev
boost        | Boost 1.74 or later      | libboost-dev
clang++      | clang++                  | clang
cmake        | CMake 3.25 or later      | cmake
compiler     | a C++17 compiler         | g++
doxygen      | Doxygen                  | doxygen
debootstrap  | debootstrap              | debootstrap
dpkg-dev     | dpkg-buildflags          | dpkg-dev
fast_float   | fast_float               | libfast-float-dev
file         | file                     | file
g++          | g++                      | g++
gcovr        | gcovr                    | gcovr
gdb          | gdb                      | gdb
gtest        | GoogleTest 1.12 or later | libgtest-dev
icu          | ICU                      | libicu-dev
llvm         | llvm-symbolizer          | llvm
localedef    | localedef with sources   | locales
meson        | Meson                    | meson
mkdocs       | MkDocs                   | mkdocs
mkdocs-theme | the theme "material"     | mkdocs-material
ninja        | Ninja                    | ninja-build
nm           | nm                       | binutils
pkg-config   | pkg-config               | pkg-config
python3      | Python 3                 | python3"

# fail MESSAGE [STATUS]
fail() {
    echo "${0##*/}: $1" >&2
    exit "${2:-1}"
}

# need_field NEED NUMBER prints a field of a need's line.
need_field() {
    awk -F ' *[|] *' -v need="$1" -v number="$2" '$1 == need { print $number }' <<<"$known_needs"
}

# make_builds creates the folder of the builds.
make_builds() {
    { mkdir -p "$builds" && [[ -w $builds ]]; } 2>/dev/null ||
        fail "cannot write to $builds; FOUNDATION_JSON_BUILD_FOLDER may name another folder to build in"
}

# ---- What there is -------------------------------------------------------------------------

# compiles COMMAND: whether it compiles C++17.
compiles() {
    local program status=0
    program=$(mktemp)
    "$1" -std=c++17 -x c++ - -o "$program" >/dev/null 2>&1 <<<$'#include <optional>\nint main() {}' ||
        status=1
    rm -f "$program"
    return "$status"
}

# find_compiler sets `compiler` to the one that CXX names, or to the first that works.
compiler=
find_compiler() {
    local candidate candidates=(g++ clang++ c++)
    [[ -z $compiler ]] || return 0
    [[ -z ${CXX-} ]] || candidates=("$CXX")
    for candidate in "${candidates[@]}"; do
        candidate=$(type -P "$candidate") || continue
        if compiles "$candidate"; then
            compiler=$candidate
            return
        fi
    done
    [[ -z ${CXX-} ]] || fail "CXX names '$CXX', which does not compile C++17"
    return 1
}

# makes_locales: whether localedef finds the source of a locale.
makes_locales() {
    local folder status=0
    folder=$(mktemp -d)
    localedef -i de_DE -f UTF-8 "$folder/locale" >/dev/null 2>&1 || status=1
    rm -rf "$folder"
    return "$status"
}

# is_there NEED: whether a need other than a library is there.
is_there() {
    case $1 in
        compiler) find_compiler ;;
        cmake)
            local version
            version=$(cmake --version 2>/dev/null | sed -n '1s/^cmake version \([0-9]*\.[0-9]*\).*/\1/p')
            [[ -n $version ]] && ((${version%.*} > 3 || (${version%.*} == 3 && ${version#*.} >= 25)))
            ;;
        ninja) type -P ninja >/dev/null || type -P ninja-build >/dev/null || type -P samu >/dev/null ;;
        localedef)
            [[ -e /usr/share/i18n/locales/de_DE ]] && type -P localedef >/dev/null || makes_locales
            ;;
        dpkg-dev) type -P dpkg-buildflags >/dev/null ;;
        mkdocs-theme) mkdocs build --help 2>/dev/null | grep -q material ;;
        llvm) type -P llvm-symbolizer >/dev/null ;;
        *) type -P "$1" >/dev/null ;;
    esac
}

# probe_libraries NEED... prints those that can be used. A result stays valid while the library's
# header exists and the environment asks for the same settings.
probe_libraries() {
    local -r known=$builds/libraries
    local key name path missing=()
    key="$compiler ${CMAKE_PREFIX_PATH-} ${BOOST_ROOT-} ${CXXFLAGS-} ${CPATH-}"
    [[ -f $known && $(head -n 1 "$known") == "$key" ]] || echo "$key" >"$known"
    for name; do
        path=$(sed -n "s/^$name //p" "$known" | tail -n 1)
        if [[ -n $path && -e $path ]]; then echo "$name"; else missing+=("$name"); fi
    done
    ((${#missing[@]})) || return 0
    rm -rf "$builds/probe"
    cmake -S "$root/cmake/probe" -B "$builds/probe" -G Ninja -DCMAKE_CXX_COMPILER="$compiler" \
        -DRESULT="$builds/probe.txt" -DWANTED="$(IFS=';' && echo "${missing[*]}")" \
        >"$builds/probe.log" 2>&1 </dev/null ||
        fail "cannot look for libraries, see $builds/probe.log"
    cat "$builds/probe.txt" >>"$known"
    cut -d ' ' -f 1 "$builds/probe.txt"
}

# look_for NEED... sets `missing` to those that are not there. Without the tools to look for libraries,
# all libraries count as missing.
missing=()
look_for() {
    local name found libraries=()
    missing=()
    for name; do
        case $name in
            boost | icu | fast_float | gtest | benchmark) libraries+=("$name") ;;
            *) is_there "$name" || missing+=("$name") ;;
        esac
    done
    ((${#libraries[@]})) || return 0
    found=
    if is_there compiler && is_there cmake && is_there ninja; then
        found=$(probe_libraries "${libraries[@]}")
    fi
    for name in "${libraries[@]}"; do
        grep -qxF "$name" <<<"$found" || missing+=("$name")
    done
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

# install_missing installs the packages of what look_for found missing: if tools are missing, only
# these, since they are needed to look for libraries.
install_missing() {
    local name tools=() libraries=()
    for name in "${missing[@]}"; do
        case $name in
            boost | icu | fast_float | gtest | benchmark) libraries+=("$(need_field "$name" 3)") ;;
            *) tools+=("$(need_field "$name" 3)") ;;
        esac
    done
    if ((${#tools[@]})); then apt_install "${tools[@]}"; else apt_install "${libraries[@]}"; fi
}

# missing_text names what look_for found missing, with Debian's packages.
missing_text() {
    local name text=
    for name in "${missing[@]}"; do
        text+="${text:+, }$(need_field "$name" 2) ($(need_field "$name" 3))"
    done
    echo "$text"
}

# provide NEED... looks for these, and installs what is missing, as far as possible.
provide() {
    local lock _
    make_builds
    # One at a time: two commands may be run at once, as in `scripts/demo | scripts/demo -`.
    exec {lock}>"$builds/needs.lock"
    flock "$lock"
    look_for "$@"
    for _ in tools libraries; do
        ((${#missing[@]})) || break
        install_missing
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

# missing_packages PACKAGE... prints those that are not installed.
missing_packages() {
    local installed package
    installed=$(dpkg-query -W -f '${db:Status-Status} ${Package}\n' "$@" 2>/dev/null || true)
    for package; do
        grep -qxF "installed $package" <<<"$installed" || echo "$package"
    done
}

# install_packages PACKAGE... installs those that are missing, or fails and names them. For tools that
# only Debian has.
install_packages() {
    local missing
    mapfile -t missing < <(missing_packages "$@")
    ((${#missing[@]})) || return 0
    make_builds
    apt_install "${missing[@]}"
    mapfile -t missing < <(missing_packages "$@")
    ((${#missing[@]} == 0)) || fail "$obstacle; missing packages: ${missing[*]}"
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

# build NAME TARGET [SETTING...] configures the folder NAME of the builds, with settings and presets
# as cmake takes them, and builds a target in it. All output goes to standard error.
build() {
    local -r folder=$builds/$1 target=$2
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
    cmake --build "$folder" --target "$target" >&2
    exec {lock}>&-
}

# run_tests NAME [OPTION...] runs the tests built in the folder NAME of the builds, with more options
# for ctest. Prints what failed, in the order of the tests and not that of their ends, since tests of
# what others are built on come first: of each test a few lines, of all together a few screens. Then
# comes a summary; the full list goes to tests.log there.
run_tests() {
    local -r folder=$builds/$1
    local -r log=$folder/tests.log
    local terminal=
    shift
    if [[ -t 1 ]]; then terminal=yes; fi
    ctest --test-dir "$folder" --output-on-failure --no-tests=error --parallel "$(nproc)" "$@" 2>&1 |
        tee "$log" | awk -v list="$log" -v terminal="$terminal" '
            function print_failures(number, lines) {
                for (number = 1; number <= last; ++number) {
                    if (!(number in result)) continue
                    if (lines > 120) break
                    print result[number] output[number]
                    if (hidden[number]) printf "... %d more lines\n", hidden[number]
                    lines += 2 + shown[number]
                    delete result[number]
                    --failures
                }
                if (failures) printf "... and the output of %d more tests\n", failures
                print ""
            }
            summary || /^ +Start +[0-9]+: / { if (summary) print; next }
            /^ *[0-9]+\/[0-9]+ +Test +#[0-9]+: / {
                number = $0
                sub(/^[^#]*#/, "", number)
                number += 0
                if (/ Passed +[0-9.]+ sec *$/) {
                    number = 0
                } else {
                    result[number] = $0
                    if (number > last) last = number
                    ++failures
                }
                if (terminal) printf "\r%s%s ", $1, failures ? ", " failures " failed" : ""
                next
            }
            /^[0-9]+% tests passed/ {
                if (terminal) printf "\r"
                if (failures) print_failures()
                print "The result of each test is in " list "\n"
                print
                summary = 1
                next
            }
            !number { if (NF) print; next }
            !NF { next }
            ++shown[number] <= 15 { output[number] = output[number] "\n" substr($0, 1, 400); next }
            { --shown[number]; ++hidden[number] }
            END { if (failures && !summary) print_failures() }'
}
