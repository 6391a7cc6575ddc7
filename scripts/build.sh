#!/usr/bin/env bash
# Configures (once) and builds one preset: dev (default) or asan.
set -euo pipefail
cd "$(dirname "$0")/.."
preset="${1:-dev}"
# Paths relative to the checkout let other checkouts of the project share the compiler cache.
export CCACHE_BASEDIR="${CCACHE_BASEDIR:-$PWD}"
if [ ! -f "build/$preset/build.ninja" ]; then
  cmake --preset "$preset"
fi
cmake --build --preset "$preset"
