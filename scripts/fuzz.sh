#!/usr/bin/env bash
# Builds the libFuzzer targets with clang and ASan, and runs each for the given seconds (default 60).
set -euo pipefail
cd "$(dirname "$0")/.."
seconds="${1:-60}"
if ! command -v clang++ >/dev/null; then
  echo "clang++ not found: fuzzing skipped"
  exit 0
fi
if [ ! -f build/fuzz/build.ninja ]; then
  cmake --preset fuzz
fi
cmake --build --preset fuzz
for target in build/fuzz/fuzz/fuzz_*; do
  [ -f "$target" ] && [ -x "$target" ] || continue
  name=$(basename "$target")
  corpus="build/fuzz/corpus-$name"
  mkdir -p "$corpus"
  seeds="fuzz/seeds/${name#fuzz_}"
  echo "== fuzzing $name for ${seconds}s"
  if [ -d "$seeds" ]; then
    "$target" -max_total_time="$seconds" -max_len=65536 -rss_limit_mb=4096 -print_final_stats=1 "$corpus" "$seeds"
  else
    "$target" -max_total_time="$seconds" -max_len=65536 -rss_limit_mb=4096 -print_final_stats=1 "$corpus"
  fi
done
