# What the scripts share: finding what a bare machine lacks, and installing just that.
# Sourced, not run.

set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

say() { printf '%s\n' "$*"; }

fail() {
    printf '%s\n' "$*" >&2
    exit 1
}

missing_packages=()

# need_command COMMAND PACKAGE: the package is wanted if the command is not there.
need_command() {
    command -v "$1" >/dev/null 2>&1 || missing_packages+=("$2")
}

# need_header HEADER PACKAGE: the package is wanted if no compiler is there yet or it does not find the header.
need_header() {
    if ! command -v c++ >/dev/null 2>&1 || ! printf '#include <%s>\n' "$1" | c++ -E -x c++ - >/dev/null 2>&1; then
        missing_packages+=("$2")
    fi
}

# need_file FILE PACKAGE: the package is wanted if the file is not there.
need_file() {
    [ -e "$1" ] || missing_packages+=("$2")
}

# need_clang_runtime: the sanitizer libraries of clang, which Debian packs apart from it.
need_clang_runtime() {
    local probe
    probe=$(mktemp -d)
    if ! printf 'int main() {}\n' | clang++ -fsanitize=address,fuzzer-no-link -x c++ - -o "$probe/a" >/dev/null 2>&1; then
        missing_packages+=(libclang-rt-14-dev)
    fi
    rm -rf "$probe"
}

need_build_tools() {
    need_command c++ g++
    need_command cmake cmake
    need_command ninja ninja-build
}

# install_missing: installs what the need_... calls found missing, through apt as root or with sudo.
install_missing() {
    [ ${#missing_packages[@]} -gt 0 ] || return 0
    command -v apt-get >/dev/null 2>&1 ||
        fail "Missing, by the names of their Debian packages: ${missing_packages[*]}. There is no apt here to install them."
    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null 2>&1 ||
            fail "Missing packages: ${missing_packages[*]}. Installing them takes root or sudo."
        as_root=(sudo)
    fi
    say "Installing ${missing_packages[*]}"
    "${as_root[@]}" apt-get update -qq
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends \
        "${missing_packages[@]}" >/dev/null
    missing_packages=()
}
