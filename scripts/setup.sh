# What the commands of this project share; to be sourced. Sets `root`, the project's folder.
# Everything here is silent, or nearly so, when there is nothing to do.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)

# What it takes to build the library and the demonstration, and what the tests add to that.
build_packages=(g++ cmake ninja-build libboost-dev libicu-dev libfast-float-dev)
test_packages=(libgtest-dev pkg-config locales binutils gdb python3)

# fail MESSAGE [STATUS]
fail() {
    echo "${0##*/}: $1" >&2
    exit "${2:-1}"
}

# missing_packages PACKAGE... prints those that are not installed.
missing_packages() {
    local installed package
    installed=$(dpkg-query -W -f '${db:Status-Status} ${Package}\n' "$@" 2>/dev/null || true)
    for package; do
        grep -qxF "installed $package" <<<"$installed" || echo "$package"
    done
}

# install_packages PACKAGE... installs those that are missing, or fails naming them.
install_packages() {
    local missing log=$root/build/apt.log as_root=()
    mapfile -t missing < <(missing_packages "$@")
    ((${#missing[@]})) || return 0

    local -r list="missing packages: ${missing[*]}"
    command -v apt-get >/dev/null || fail "cannot install packages without apt-get; $list"
    if ((EUID != 0)); then
        command -v sudo >/dev/null || fail "cannot install packages, neither root nor sudo; $list"
        # Without a terminal there is nobody to type a password.
        if [[ -t 0 ]]; then as_root=(sudo); else as_root=(sudo -n); fi
    fi
    if [[ -t 2 ]]; then echo "Installing ${missing[*]}" >&2; fi
    mkdir -p "$root/build"
    # Where the package lists are out of reach, those on the machine may still do.
    "${as_root[@]}" apt-get -q update >"$log" 2>&1 || true
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get -q install -y --no-install-recommends --no-remove \
        -o DPkg::Lock::Timeout=120 "${missing[@]}" >>"$log" 2>&1 || true

    mapfile -t missing < <(missing_packages "$@")
    ((${#missing[@]} == 0)) || fail "cannot install packages, see $log; missing packages: ${missing[*]}"
}

# build NAME TARGET [SETTING...] configures build/NAME, with settings and presets as cmake takes them,
# and builds a target in it. All output goes to standard error.
build() {
    local -r folder=$root/build/$1 target=$2
    shift 2
    # One at a time: two commands may be run at once, as in `scripts/demo | scripts/demo -`.
    local lock
    mkdir -p "$root/build"
    exec {lock}>"$folder.lock"
    flock "$lock"
    # A build folder that was copied along with the project from elsewhere is of no use.
    if [[ -f $folder/CMakeCache.txt ]] &&
        ! grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$root" "$folder/CMakeCache.txt"; then
        rm -rf "$folder"
    fi
    cmake -S "$root" -B "$folder" -G Ninja \
        -DCMAKE_CXX_COMPILER_LAUNCHER="$(command -v ccache || true)" \
        -DFOUNDATION_JSON_CORPUS="${FOUNDATION_JSON_CORPUS:-}" "$@" >/dev/null
    cmake --build "$folder" --target "$target" >&2
    exec {lock}>&-
}

# run_tests NAME [OPTION...] runs the tests built in build/NAME, with more options for ctest.
run_tests() {
    local -r folder=$root/build/$1
    shift
    ctest --test-dir "$folder" --output-on-failure --no-tests=error --parallel "$(nproc)" "$@"
}

# record NAME TEXT keeps the result of a run, with its date and the commit, for scripts/status.
record() {
    local commit
    commit=$(git -C "$root" rev-parse --short HEAD 2>/dev/null || echo "no commit")
    [[ -z $(git -C "$root" status --porcelain --untracked-files=no 2>/dev/null) ]] || commit+=", changed"
    mkdir -p "$root/build/last-runs"
    printf '%s | %s, %s\n' "$2" "$(date +%F)" "$commit" >"$root/build/last-runs/$1"
}
