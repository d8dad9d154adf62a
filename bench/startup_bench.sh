#!/usr/bin/env bash
# How fast the command line starts: whole-process times of `quillora
# --version`, `quillora show ID` and `quillora list --week` on a data folder of
# N entries, against a C program that prints one line, measured by hyperfine
# (Debian package hyperfine). Scripts, shell prompts and status bars call the
# command line many times a minute, so the loader's share counts.
#
#   bench/startup_bench.sh BUILD_DIR [N]          N defaults to 100000
#
# BUILD_DIR needs quillora and bench/quillora_make_store (-DQUILLORA_BENCH=ON).
# STARTUP_BASELINE=/path/to/another/quillora also measures that binary's
# --version and show, for a before-and-after. A C++ program that prints a line
# and links the shared SQLite and ICU shows what linking them the usual way
# costs. Prints a Markdown table of whole-process times: wall-clock
# median, mean CPU (user + system) and both as ratios to the C program's. On
# a busy machine the wall time mostly measures waiting for a core; the CPU
# time is the steadier figure.
set -euo pipefail
build=$(cd "$1" && pwd)
n=${2:-100000}
q="$build/quillora"
make_store="$build/bench/quillora_make_store"
command -v hyperfine >/dev/null || { echo "startup_bench: needs hyperfine" >&2; exit 1; }
tmp=$(mktemp -d "${TMPDIR:-/tmp}/quillora-startup-XXXXXX")
trap 'rm -rf "$tmp"' EXIT
export QUILLORA_LOCALE=en-US QUILLORA_NOW=2025-06-18T10:00:00
# The window is never started: no display.
unset DISPLAY WAYLAND_DISPLAY QT_QPA_PLATFORM

printf '#include <stdio.h>\nint main(void) { puts("quillora 0.1.0"); return 0; }\n' >"$tmp/hello.c"
cc -O2 -o "$tmp/hello" "$tmp/hello.c"
cat >"$tmp/hello_libs.cpp" <<'EOF_CPP'
#include <sqlite3.h>
#include <unicode/ucol.h>
#include <cstdio>
int main(int argc, char**) {
  // Never true; keeps both libraries needed.
  if (argc > 99) std::printf("%s %p\n", sqlite3_libversion(), (void*)&ucol_open);
  std::puts("quillora 0.1.0");
}
EOF_CPP
c++ -O2 -o "$tmp/hello_libs" "$tmp/hello_libs.cpp" $(pkg-config --cflags --libs sqlite3 icu-uc icu-i18n)

"$make_store" "$tmp/store" "$n" >/dev/null
id=$("$q" --data-dir "$tmp/store" list --week 2025-06-18 --ids | head -n 1)
[ -n "$id" ] || { echo "startup_bench: no entry in the week of 2025-06-18" >&2; exit 1; }

names=("C program printing a line" "C++ program linking SQLite and ICU" "quillora --version" "quillora show ID"
       "quillora list --week (N/520 entries)")
commands=("$tmp/hello" "$tmp/hello_libs" "$q --version" "$q --data-dir $tmp/store show $id"
          "$q --data-dir $tmp/store list --week 2025-06-18")
if [ -n "${STARTUP_BASELINE:-}" ]; then
  names+=("baseline --version" "baseline show ID")
  commands+=("$STARTUP_BASELINE --version" "$STARTUP_BASELINE --data-dir $tmp/store show $id")
fi

# -N: no shell between hyperfine and the program, so the C program's time is
# the floor of starting any process.
hyperfine -N --warmup 20 --min-runs "${STARTUP_RUNS:-300}" --style none \
  --export-json "$tmp/times.json" "${commands[@]}" >/dev/null 2>&1

python3 - "$tmp/times.json" "${names[@]}" <<'EOF'
import json, statistics, sys
results = json.load(open(sys.argv[1]))["results"]
names = sys.argv[2:]
def cpu(r):
    return r["user"] + r["system"]
floor = statistics.median(results[0]["times"])
floor_cpu = cpu(results[0])
print("| command | wall median ms | ratio | CPU ms | ratio |")
print("|---|---|---|---|---|")
for name, r in zip(names, results):
    med = statistics.median(r["times"])
    print(f"| {name} | {med * 1000:.2f} | {med / floor:.1f}x | "
          f"{cpu(r) * 1000:.2f} | {cpu(r) / floor_cpu:.1f}x |")
EOF
