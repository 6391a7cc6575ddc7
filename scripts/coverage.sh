#!/usr/bin/env bash
# Builds the coverage preset, runs every test and prints the line coverage of src/.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/deps.sh
if ! command -v gcovr >/dev/null; then
  sudo_cmd=()
  if [ "$(id -u)" -ne 0 ]; then sudo_cmd=(sudo); fi
  DEBIAN_FRONTEND=noninteractive "${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends gcovr
fi
bash scripts/build.sh coverage
find build/coverage -name '*.gcda' -delete
export QT_QPA_PLATFORM=offscreen
ctest --preset coverage
# Generated sources (moc, rcc, uic) live in the build folder and are left out.
gcovr --root . --filter 'src/' --exclude '.*/build/.*' --object-directory build/coverage \
  --gcov-ignore-parse-errors --print-summary --txt build/coverage/coverage.txt "$@"
