#!/usr/bin/env bash
# Builds the release preset, generates the large bundle once, and runs the benchmarks.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/deps.sh
[ -f build/release/build.ninja ] || cmake --preset release
cmake --build --preset release --target lw-generate-bundle lw-bench-database lw-bench-contacts lw-bench-reports \
  lw-bench-orders
bundle=build/release/bench-bundle.lwkdb
[ -f "$bundle/itemsordered.xml" ] || ./build/release/bench/lw-generate-bundle "$bundle"
./build/release/bench/lw-bench-database "$bundle" "$@"
./build/release/bench/lw-bench-contacts
./build/release/bench/lw-bench-reports "$bundle"
./build/release/bench/lw-bench-orders "$bundle"
