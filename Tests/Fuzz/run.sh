#!/usr/bin/env bash
# run.sh BUILD SECONDS: each fuzzer for that long, two at a time, from its corpus here and what earlier runs added in
# BUILD/corpus. Ends with a line for each: runs, coverage. An input that was found wrong lies in BUILD/findings.
set -euo pipefail
cd "$(dirname "$0")/../.."
build=$1 seconds=$2
mkdir -p "$build/findings" "$build/log"
export LSAN_OPTIONS=suppressions=$PWD/Tests/leaks-of-others.txt:print_suppressions=0
export UBSAN_OPTIONS=print_stacktrace=1

run_one() {
    local program=$1 name=${1##*/Fuzz}
    mkdir -p "$build/corpus/$name"
    "$program" -max_total_time="$seconds" -timeout=30 -rss_limit_mb=3000 -print_final_stats=1 -max_len=65536 -verbosity=1 \
        -artifact_prefix="$build/findings/$name-" "$build/corpus/$name" "Tests/Fuzz/Corpus/$name" \
        >"$build/log/$name.txt" 2>&1 || { echo "$name: see $build/log/$name.txt and $build/findings"; return 1; }
    echo "$name: $(grep -o 'cov: [0-9]* ft: [0-9]* corp: [^ ]*' "$build/log/$name.txt" | tail -n 1)," \
        "$(sed -n 's/^stat::number_of_executed_units: */runs: /p' "$build/log/$name.txt")"
}
export -f run_one
export build seconds
printf '%s\n' "$build"/bin/Fuzz* | xargs -P 2 -I{} bash -c 'run_one {}'
