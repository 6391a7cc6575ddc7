#!/usr/bin/env bash
# Installs what is missing, builds and runs every test (preset dev, or the one given).
set -euo pipefail
cd "$(dirname "$0")/.."
preset="${1:-dev}"
bash scripts/deps.sh
bash scripts/build.sh "$preset"
export QT_QPA_PLATFORM=offscreen
ctest --preset "$preset"
