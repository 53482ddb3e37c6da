#!/usr/bin/env bash
# Builds the benchmarks in release, runs them beside their peers, and prints a table of ratios with the machine,
# the compiler and the commit. The peers are Debian packages; one that cannot be had is left out.
#
#   scripts/bench.sh [PATTERN]   only the benchmark programs whose names match PATTERN (a shell pattern)
#
# BENCH_TIME: least seconds for each row (0.2). BENCH_OUT: folder for the raw results (build/bench/results).

source "$(dirname "$0")/common.sh"

pattern=${1:-*}
need_build_tools
need_command python3 python3
need_header benchmark/benchmark.h libbenchmark-dev
install_missing
need_header boost/regex.hpp libboost-regex-dev
need_header boost/archive/binary_oarchive.hpp libboost-serialization-dev
need_header cereal/archives/binary.hpp libcereal-dev
need_header eigen3/Eigen/Eigenvalues libeigen3-dev
need_header lapacke.h liblapacke-dev
need_header nanoflann.hpp libnanoflann-dev
need_header re2/re2.h libre2-dev
need_header pcre2posix.h libpcre2-dev
need_header absl/container/flat_hash_set.h libabsl-dev
install_missing

cmake --preset bench >/dev/null
cmake --build --preset bench --target benchmarks

results=${BENCH_OUT:-build/bench/results}
mkdir -p "$results"
for source in benchmarks/*.cpp; do
    name=$(basename "$source" .cpp)
    # shellcheck disable=SC2254 # the argument is a pattern by intent
    case $name in $pattern) ;; *) continue ;; esac
    say "-- $name"
    build/bench/benchmarks/"$name" --benchmark_min_time="${BENCH_TIME:-0.2}" \
        --benchmark_out="$results/$name.json" --benchmark_out_format=json >/dev/null
done
python3 scripts/bench_table.py "$results" "$pattern"
