#!/usr/bin/env bash
# Installs what is missing, builds and starts Ledgerwick on the user's own database.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/deps.sh
bash scripts/build.sh dev
exec ./build/dev/src/ui/ledgerwick "$@"
