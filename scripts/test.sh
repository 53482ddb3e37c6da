#!/usr/bin/env bash
# Builds and tests the library: g++ release, then clang with the address and undefined-behaviour sanitizers,
# the thread sanitizer, five seconds of each fuzz target, and the reference pages, which fail on a public name without
# a docstring. Installs what is missing first. A second run builds only what changed.
#
#   scripts/test.sh             everything
#   scripts/test.sh release     one or more of: format, docs, release, asan, tsan, fuzz

source "$(dirname "$0")/common.sh"

parts=("$@")
[ ${#parts[@]} -gt 0 ] || parts=(format docs release asan tsan fuzz)
fuzz_seconds=${FUZZ_SECONDS:-5}

need_build_tools
need_command git git
need_command clang++ clang
need_command clang-format clang-format
need_command doxygen doxygen
need_command python3 python3
need_command gdb gdb
need_command pkg-config pkg-config
need_command valgrind valgrind
need_file /usr/share/i18n/locales/de_DE locales
need_header gtest/gtest.h libgtest-dev
need_header benchmark/benchmark.h libbenchmark-dev
install_missing
need_clang_runtime
install_missing

check_format() {
    say "== format"
    git ls-files '*.h' '*.cpp' | xargs -r clang-format --dry-run -Werror
}

make_docs() {
    say "== docs"
    cmake --preset docs >/dev/null
    cmake --build --preset docs
}

build_and_test() {
    say "== $1"
    cmake --preset "$1" >/dev/null
    cmake --build --preset "$1"
    ctest --preset "$1" --parallel "$(nproc)"
}

run_fuzzers() {
    say "== fuzz, $fuzz_seconds s each, as many at once as there are cores"
    cmake --preset asan >/dev/null
    cmake --build --preset asan --target fuzzers
    local corpus running=()
    for corpus in fuzz/corpus/*; do
        fuzz_one "$(basename "$corpus")" &
        running+=($!)
        if [ ${#running[@]} -ge "$(nproc)" ]; then
            wait "${running[0]}"
            running=("${running[@]:1}")
        fi
    done
    local job
    for job in "${running[@]}"; do wait "$job"; done
}

fuzz_one() {
    local name=$1 log=build/asan/fuzz/$1.log corpus=build/asan/fuzz/corpus/$1
    mkdir -p "$corpus" # what is found is kept for the next search
    if build/asan/fuzz/"$name" -max_total_time="$fuzz_seconds" -rss_limit_mb=2048 -timeout=10 \
        -print_final_stats=1 -verbosity=0 "$corpus" fuzz/corpus/"$name" >"$log" 2>&1; then
        say "-- $name: $(sed -n 's/^stat::number_of_executed_units: *//p' "$log") inputs, no finding"
    else
        cat "$log"
        fail "fuzz target $name has a finding"
    fi
}

for part in "${parts[@]}"; do
    case $part in
    format) check_format ;;
    docs) make_docs ;;
    release | asan | tsan) build_and_test "$part" ;;
    fuzz) run_fuzzers ;;
    *) fail "scripts/test.sh knows format, docs, release, asan, tsan and fuzz, not '$part'" ;;
    esac
done
say "All of it passed: ${parts[*]}"
