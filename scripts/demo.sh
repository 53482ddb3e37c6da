#!/usr/bin/env bash
# Builds the library and its example programs, and runs the main job on the structures that come with them:
# metal centres named, measured and drawn. Installs what is missing first; a second run is quick.

source "$(dirname "$0")/common.sh"

need_build_tools
install_missing

build=build/demo
say "Building"
cmake --preset release -B "$build" -DVORLANE_BUILD_TESTS=OFF >/dev/null
cmake --build "$build"

report=$build/report
mkdir -p "$report"
"$build"/examples/coordination_report --svg "$report" --html "$report/index.html" --scene "$report/scene" \
  --ribbon examples/data/chains/1c1n_ca.xyz --ribbon examples/data/chains/1guy_ca_with_break.xyz \
  examples/data/structures/*.xyz

say ""
say "The archive of the scenes, field by field; its first lines:"
"$build"/examples/scene_inspect "$report/scene" --as "$(cat "$report/scene.list")" >"$report/scene.txt"
head -n 12 "$report/scene.txt"
say "... $(wc -l <"$report/scene.txt") lines in all: $PWD/$report/scene.txt"

say ""
say "The report with its pictures: $PWD/$report/index.html"
