#!/bin/bash
# Runs the built fuzz targets, each with its seed corpus, and prints a line
# of figures per run. Called by `make fuzz`; the settings come from there:
#
#   fuzz/run.sh BUILD_DIR [TARGET...]     (no TARGET: every fuzz_* built)
#
#   FUZZ_SECONDS      wall-clock seconds of one run (default 60)
#   FUZZ_CPU_SECONDS  if set: repeat runs until the target used this much CPU
#   FUZZ_JOBS         targets run at the same time (default 1)
#   FUZZ_NICE         nice level of the fuzzers (default 0)
#   FUZZ_FLAGS        extra libFuzzer flags
#
# New inputs go to BUILD_DIR/fuzz/work/NAME, crashes and other findings to
# BUILD_DIR/fuzz/findings/NAME/; the corpora in fuzz/corpus are only read.
# Logs: BUILD_DIR/fuzz/logs/NAME.N.log. Exit status 1 if any run found something.
set -u
build=$1; shift
here=$(cd "$(dirname "$0")" && pwd)
seconds=${FUZZ_SECONDS:-60}
cpu_target=${FUZZ_CPU_SECONDS:-0}
jobs=${FUZZ_JOBS:-1}
niceness=${FUZZ_NICE:-0}
flags=${FUZZ_FLAGS:-}

# The longest input worth trying per target: enough for every structure the
# target reads, small enough to keep executions fast.
max_len() {
    case "$1" in
        fuzz_crypt|fuzz_regexp|fuzz_calendar) echo 1024 ;;
        fuzz_symbols) echo 512 ;;
        *) echo 2048 ;;
    esac
}

# One target: runs until its CPU budget is spent (or once). Prints a summary.
fuzz_one() {
    name=$1
    binary="$build/fuzz/$name"
    work="$build/fuzz/work/$name"; findings="$build/fuzz/findings/$name"; logs="$build/fuzz/logs"
    mkdir -p "$work" "$findings" "$logs"
    seeds="$here/corpus/$name"; [ -d "$seeds" ] || seeds=""
    run=0; cpu=0; status=0
    while :; do
        run=$((run + 1))
        log="$logs/$name.$run.log"
        nice -n "$niceness" /usr/bin/time -f "cpu_seconds %U %S" \
            "$binary" -max_total_time="$seconds" -max_len="$(max_len "$name")" -rss_limit_mb=2048 \
            -timeout=10 -print_final_stats=1 -artifact_prefix="$findings/" $flags "$work" $seeds >"$log" 2>&1 \
            || status=1
        used=$(awk '/^cpu_seconds/ { printf "%.1f", $2 + $3 }' "$log")
        cpu=$(awk -v a="$cpu" -v b="${used:-0}" 'BEGIN { printf "%.1f", a + b }')
        execs=$(awk '/stat::number_of_executed_units/ { print $NF }' "$log")
        rate=$(awk '/stat::average_exec_per_sec/ { print $NF }' "$log")
        rss=$(awk '/stat::peak_rss_mb/ { print $NF }' "$log")
        cov=$(grep -o 'cov: [0-9]* ft: [0-9]*' "$log" | tail -n 1)
        # Executions per CPU second: the rate on one core of its own, however
        # busy the machine was (exec/s is per wall-clock second).
        per_cpu=$(awk -v e="${execs:-0}" -v c="${used:-0}" 'BEGIN { printf "%d", (c > 0 ? e / c : 0) }')
        echo "$name run $run: execs ${execs:-?} exec/s ${rate:-?} exec/cpu_s $per_cpu ${cov:-cov: ?}" \
             "rss_mb ${rss:-?} cpu_s $used total_cpu_s $cpu status $status"
        [ "$status" = 0 ] || break
        awk -v c="$cpu" -v t="$cpu_target" 'BEGIN { exit !(c < t) }' || break
    done
    return "$status"
}

if [ $# -eq 0 ]; then
    set -- $(for f in "$build"/fuzz/fuzz_*; do [ -x "$f" ] && basename "$f"; done)
fi
mkdir -p "$build/fuzz/logs"
rm -f "$build"/fuzz/logs/*.summary
failed=0
if [ "$jobs" -le 1 ]; then
    for name in "$@"; do fuzz_one "$name" || failed=1; done
else
    # Run JOBS targets at a time; each writes its own summary line.
    running=0
    for name in "$@"; do
        fuzz_one "$name" > "$build/fuzz/logs/$name.summary" 2>&1 &
        running=$((running + 1))
        if [ "$running" -ge "$jobs" ]; then
            wait -n || true
            running=$((running - 1))
        fi
    done
    wait
    cat "$build"/fuzz/logs/*.summary
    grep -q 'status 1' "$build"/fuzz/logs/*.summary && failed=1
fi
exit $failed
