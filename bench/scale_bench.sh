#!/usr/bin/env bash
# The whole system at scale: every user-facing operation, run by the
# quillora binary as a separate process on a data folder of N entries, with
# its CPU time (user + system), wall time and peak resident memory (GNU
# time's %U + %S, %e and %M). On a shared machine compare the CPU times: the
# wall time also holds fsyncs and waiting for other processes.
#
#   bench/scale_bench.sh BUILD_DIR N [N...]      e.g. build-bench 100000 1000000
#
# BUILD_DIR needs quillora and bench/quillora_make_store (a Release build
# with -DQUILLORA_BENCH=ON). Prints one Markdown table row per operation and
# N: | operation | N | CPU s | wall s | peak MB |. Stores are made under $SCALE_TMP (default /tmp) and removed afterwards.
# SCALE_ONLY=REGEX measures only the operations whose names match, e.g.
# SCALE_ONLY='export|report|backup'.
set -euo pipefail
build=$(cd "$1" && pwd); shift
q="$build/quillora"
make_store="$build/bench/quillora_make_store"
tmp=$(mktemp -d "${SCALE_TMP:-/tmp}/quillora-scale-XXXXXX")
trap 'rm -rf "$tmp"' EXIT
export QUILLORA_LOCALE=en-US QUILLORA_NOW=2025-06-18T10:00:00

# measure NAME DATA_DIR ARGS...: prints "| NAME | N | CPU s | wall s | MB |".
measure() {
  local name=$1 data=$2; shift 2
  if [[ -n "${SCALE_ONLY:-}" && ! "$name" =~ $SCALE_ONLY ]]; then return; fi
  /usr/bin/time -f "%U %S %e %M" "$q" --data-dir "$data" --yes "$@" >/dev/null 2>"$tmp/err" || true
  local user sys wall kb
  read -r user sys wall kb <<<"$(tail -n 1 "$tmp/err")"
  printf '| %s | %s | %.2f | %s | %.1f |\n' "$name" "$n" "$(echo "$user + $sys" | bc -l)" \
    "$wall" "$(echo "$kb / 1024" | bc -l)"
}

for n in "$@"; do
  store="$tmp/store-$n"
  start=$(date +%s.%N)
  "$make_store" "$store" "$n"
  printf '| generate (quillora_make_store) | %s | %.1f | - |\n' "$n" \
    "$(echo "$(date +%s.%N) - $start" | bc -l)"
  work="$tmp/work"
  # The copy is synced so that its dirty pages are not flushed by the first
  # measure's fsync.
  fresh() { rm -rf "$work"; cp -a "$store" "$work"; sync; }

  fresh
  measure "add one entry" "$work" add --task Work --date 2025-06-18 --client "Client A" --duration 1.5
  measure "walk: list all ids" "$work" list --custom 2016-01-01 2025-12-31 --ids
  measure "week view (list)" "$work" list --week 2025-06-18
  measure "month summary" "$work" summary --month 2025-06-18
  measure "year summary" "$work" summary --custom 2025-01-01 2025-12-31
  measure "CSV export, all" "$work" export csv --from 2016-01-01 --to 2025-12-31 "$tmp/all.csv"
  measure "XML export, all" "$work" export xml --from 2016-01-01 --to 2025-12-31 "$tmp/all.xml"
  "$q" --data-dir "$work" --yes report-def save Scale --type Tabular \
    --columns "Entry Date,Client,Project,Duration,Amount" >/dev/null
  "$q" --data-dir "$work" --yes report-def save ScaleGroup --type "Group By Field" \
    --group-by Client >/dev/null
  measure "HTML report (tabular), a year" "$work" report Scale --from 2025-01-01 --to 2025-12-31 "$tmp/year.htm"
  measure "HTML report (grouped), all" "$work" report ScaleGroup --from 2016-01-01 --to 2025-12-31 "$tmp/all.htm"
  measure "backup" "$work" backup "$tmp/all.qbk"
  rm -rf "$tmp/empty"
  measure "restore into an empty folder" "$tmp/empty" restore "$tmp/all.qbk"
  rm -rf "$tmp/empty"
  measure "archive a year with delete" "$work" archive --data --from 2016-01-01 --to 2016-12-31 --delete "$tmp/year.qba"
  measure "find and replace (a client, N/20 entries)" "$work" replace --type Client --find "Client A" --with "Client Z"
  ls -l "$tmp"/all.csv "$tmp"/all.xml "$tmp"/all.qbk "$tmp"/year.htm "$tmp"/all.htm >&2 || true
  rm -rf "$work" "$store" "$tmp"/all.* "$tmp"/year.*
done
