# What ./run, ./test and .ci/run share: packages, build folders and the time of each step. Sourced by bash, not run.

zelk_root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
zelk_jobs=$(($(nproc) + 1))

# What one checkout has compiled serves every other one, wherever it lies.
export CCACHE_BASEDIR=$zelk_root CCACHE_NOHASHDIR=1

# What every build takes. Tests, benchmarks and tools belong to the default target, so that nothing rots unseen.
zelk_build_packages=(g++ cmake ninja-build ccache pkg-config libgtest-dev libbenchmark-dev libsndfile1-dev zlib1g-dev libfftw3-dev)

# What the build for Windows takes, and what runs it here. GoogleTest is built from its sources.
zelk_windows_packages=(cmake ninja-build g++-mingw-w64-x86-64-posix libz-mingw-w64-dev googletest wine wine64)

say() {
    printf '%s\n' "$*"
}

fail() {
    printf '%s: %s\n' "$(basename "$0")" "$*" >&2
    exit 2
}

# step "what it does" command ...: runs it, says how long it took, hands its status on.
step() {
    local name=$1 begin end status=0
    shift
    say "== $name"
    begin=$(date +%s%N)
    "$@" || status=$?
    end=$(date +%s%N)
    local tenths=$(((end - begin) / 100000000))
    say "== $name: $((tenths / 10)).$((tenths % 10)) s$([ "$status" -eq 0 ] || printf ', FAILED')"
    return "$status"
}

as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        say "not root and no sudo here; as root, run: $*" >&2
        return 1
    fi
}

missing_packages() {
    local package
    for package in "$@"; do
        dpkg-query -W -f='${db:Status-Status}\n' "$package" 2>/dev/null | grep -qx installed || printf '%s ' "$package"
    done
}

# need_packages name ...: takes what is missing, and touches no network when nothing is.
need_packages() {
    command -v dpkg-query >/dev/null || {
        say "no Debian packages here; the build needs what they bring: $*"
        return 0
    }
    local missing
    read -ra missing <<<"$(missing_packages "$@")"
    if [ "${#missing[@]}" -eq 0 ]; then
        say "all packages are here"
        return 0
    fi
    say "installing: ${missing[*]}"
    as_root apt-get -qq update || say "the lists of packages could not be refreshed; trying with those that are here"
    as_root env DEBIAN_FRONTEND=noninteractive apt-get -qq -y --no-install-recommends install "${missing[@]}" \
        </dev/null >/dev/null || {
        say "apt-get could not install: ${missing[*]}" >&2
        return 1
    }
}

# build_tree folder "targets" [-DNAME=VALUE ...]: configures on the first time and when the options change; an empty
# list of targets means all.
build_tree() {
    local folder=$zelk_root/$1 targets wanted quiet=()
    read -ra targets <<<"$2"
    shift 2
    wanted="$*"
    if [ ! -f "$folder/build.ninja" ] || [ "$(cat "$folder/asked-options" 2>/dev/null)" != "$wanted" ]; then
        cmake -S "$zelk_root" -B "$folder" -G Ninja "$@" >"$folder.log" 2>&1 || {
            cat "$folder.log" >&2
            rm -f "$folder.log"
            return 1
        }
        mv "$folder.log" "$folder/configure.log"
        printf '%s\n' "$wanted" >"$folder/asked-options"
    fi
    [ -t 1 ] || quiet=(--quiet)
    cmake --build "$folder" -j "$zelk_jobs" ${targets[@]+--target "${targets[@]}"} -- ${quiet[@]+"${quiet[@]}"}
}

# run_tests folder [ctest options]: leaves the results in the folder's results.xml and says what failed.
run_tests() {
    local folder=$zelk_root/$1
    shift
    rm -f "$folder/results.xml"
    (cd "$folder" && ctest -j "$zelk_jobs" --output-on-failure --no-tests=error --timeout 300 --quiet \
        --output-junit "$folder/results.xml" --output-log "$folder/tests.log" "$@") && return 0
    sed -n '/^The following tests FAILED/,$p' "$folder/tests.log"
    grep -vE '^ *[0-9]+/[0-9]+ Test .* Passed|^ *Start ' "$folder/tests.log" | head -n 200
    return 1
}

# test_counts folder: "passed failed skipped" of the last run_tests; nothing when there was none.
test_counts() {
    local file=$zelk_root/$1/results.xml
    [ -f "$file" ] || return 1
    awk 'BEGIN { RS = ">" }
         /<testsuite / { if (match($0, /tests="[0-9]+"/)) tests = substr($0, RSTART + 7, RLENGTH - 8)
                         if (match($0, /failures="[0-9]+"/)) failed = substr($0, RSTART + 10, RLENGTH - 11)
                         if (match($0, /disabled="[0-9]+"/)) skipped += substr($0, RSTART + 10, RLENGTH - 11)
                         if (match($0, /skipped="[0-9]+"/)) skipped += substr($0, RSTART + 9, RLENGTH - 10) }
         END { print tests - failed - skipped, failed + 0, skipped + 0 }' "$file"
}

# The product and its tools, as a user gets them.
build_release() {
    build_tree build "" -DCMAKE_BUILD_TYPE=Release
}
