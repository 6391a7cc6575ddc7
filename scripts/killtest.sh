#!/usr/bin/env bash
# Kills an import's save at many moments, then checks that every record file
# is wholly old or wholly new, that the next start reads everything, and that
# the next copy to take the lock clears what the killed save left behind.
#   scripts/killtest.sh [BUILD_DIR]   (default build/dev)
set -euo pipefail
cd "$(dirname "$0")/.."
cli="$(pwd)/${1:-build/dev}/src/cli/ledgerwick-cli"
[ -x "$cli" ] || { echo "killtest: no $cli (build first)"; exit 2; }
kills=24
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export HOME="$work/home" XDG_RUNTIME_DIR="$work/runtime" QT_QPA_PLATFORM=offscreen
mkdir -p "$HOME" "$XDG_RUNTIME_DIR" && chmod 700 "$XDG_RUNTIME_DIR"

# A small bundle of every kind, and 2,000 new contacts to import.
python3 - "$work/base.lwkdb" "$work/add.tsv" <<'PY'
import os, sys
bundle, tsv = sys.argv[1], sys.argv[2]
os.makedirs(bundle)
kinds = {"contacts.xml": ("contacts", 20000, "name"), "orders.xml": ("orders", 6000, "title"),
         "items.xml": ("products", 3000, "item"), "itemsordered.xml": ("materials", 15000, "item"),
         "bills.xml": ("bills", 5000, "name"), "actions.xml": ("actions", 3000, "title")}
for name, (key, count, field) in kinds.items():
    with open(os.path.join(bundle, name), "w", encoding="utf-8") as f:
        f.write('<?xml version="1.0" encoding="UTF-8"?>\n<plist version="1.0">\n<dict>\n\t<key>%s</key>\n\t<array>\n' % key)
        for i in range(1, count + 1):
            f.write("\t\t<dict>\n\t\t\t<key>id</key>\n\t\t\t<string>%d</string>\n"
                    "\t\t\t<key>%s</key>\n\t\t\t<string>%s %d &amp; sons, caf\u00e9</string>\n\t\t</dict>\n"
                    % (i, field, name, i))
        f.write("\t</array>\n</dict>\n</plist>\n")
with open(tsv, "w") as f:
    f.write("name\tphone\n" + "".join("New %d\t%d\n" % (i, i) for i in range(2000)))
PY
# The files as the program writes them: the "old" state.
"$cli" save --db "$work/base.lwkdb" >/dev/null
rm -rf "$work/base.lwkdb/Backups"
fingerprint() { (cd "$1" && for f in contacts orders items itemsordered bills actions; do
    if [ -f "$f.xml" ]; then sha1sum < "$f.xml" | cut -c1-40; else echo none; fi; done); }
old=($(fingerprint "$work/base.lwkdb"))
oldcounts=$("$cli" check --db "$work/base.lwkdb" | head -6)

# The "new" state, and how long the whole command takes.
cp -r "$work/base.lwkdb" "$work/new.lwkdb"
start=$(date +%s%N)
"$cli" import contacts "$work/add.tsv" --db "$work/new.lwkdb" >/dev/null 2>&1
took=$(( ($(date +%s%N) - start) / 1000 ))
new=($(fingerprint "$work/new.lwkdb"))
newcounts=$("$cli" check --db "$work/new.lwkdb" | head -6)
[ "${old[0]}" != "${new[0]}" ] || { echo "killtest: the import changed nothing"; exit 1; }

failures=0; allnew=0
for i in $(seq 0 $((kills - 1))); do
    rm -rf "$work/b.lwkdb"; cp -r "$work/base.lwkdb" "$work/b.lwkdb"
    # Moments from a third of the run (still reading) to just past its end.
    delay=$(( took / 3 + took * 3 * i / (4 * kills) ))
    "$cli" import contacts "$work/add.tsv" --db "$work/b.lwkdb" >/dev/null 2>&1 &
    pid=$!
    sleep "$(printf '%d.%06d' $((delay / 1000000)) $((delay % 1000000)))"
    kill -9 "$pid" 2>/dev/null || true
    wait "$pid" 2>/dev/null || true
    now=($(fingerprint "$work/b.lwkdb"))
    newfiles=0
    for k in 0 1 2 3 4 5; do
        if [ "${now[$k]}" = "${new[$k]}" ] && [ "${now[$k]}" != "${old[$k]}" ]; then newfiles=$((newfiles + 1))
        elif [ "${now[$k]}" != "${old[$k]}" ]; then echo "kill $i: file $k is neither old nor new"; failures=$((failures + 1)); fi
    done
    [ "${now[0]}" = "${new[0]}" ] && allnew=$((allnew + 1))
    # The next start reads every record of the one state or the other.
    counts=$("$cli" check --verbose --db "$work/b.lwkdb" 2>"$work/err" | head -6)
    if [ "$counts" != "$oldcounts" ] && [ "$counts" != "$newcounts" ]; then
        echo "kill $i: the next start read:"; echo "$counts"; failures=$((failures + 1)); fi
    if grep -q "could not be read" "$work/err"; then echo "kill $i: a file could not be read"; failures=$((failures + 1)); fi
    # The next copy to take the lock clears the killed save's temporary files
    # (every third kill, to keep the test short).
    [ $((i % 3)) -eq 2 ] || continue
    "$cli" save --break-stale-lock --db "$work/b.lwkdb" >/dev/null 2>&1 || { echo "kill $i: the next save failed"; failures=$((failures + 1)); }
    if ls "$work/b.lwkdb" | grep -Eq '\.xml\.[A-Za-z0-9]{6}$'; then echo "kill $i: temporary files left"; failures=$((failures + 1)); fi
done
echo "killtest: $kills kills over $((took / 1000)) ms runs; $allnew with the new contacts, $failures failures"
[ $failures -eq 0 ]
