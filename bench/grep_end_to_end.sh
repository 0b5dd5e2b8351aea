#!/bin/sh
# kzbs grep on a large log file, whole process, against GNU grep and ripgrep.
#
#   bench/grep_end_to_end.sh BUILD_DIR
#
# Generates BUILD_DIR/grep_end_to_end.log (2.5 million lines, about 150 MB,
# the same bytes on every machine), checks that the three tools print the same
# lines for each pattern, then times them with hyperfine (median of runs, the
# output read from a pipe and discarded: GNU grep stops at the first match
# when its output is /dev/null) and prints, per pattern,
#   grep_end_to_end/PATTERN vs_grep=R vs_ripgrep=R
# R being our speed over theirs (their time over ours; the same for CPU time
# in parentheses), and the start-up time of each tool, which counts at this
# size.
set -eu

build=${1:?usage: grep_end_to_end.sh BUILD_DIR}
kzbs="$build/tools/kzbs/kzbs"
log="$build/grep_end_to_end.log"
runs=${GREP_BENCH_RUNS:-5}
export LC_ALL=C

for tool in "$kzbs" grep rg hyperfine python3; do
    command -v "$tool" >/dev/null || { echo "grep_end_to_end: $tool is missing" >&2; exit 1; }
done

# The patterns of bench_text's matcher comparison.
set -- 'needle' '[0-9]+-[0-9]+' '^the [a-z]+' 'error.*disk' '[a-z]+ing '

if [ ! -s "$log" ]; then
    python3 - "$log.tmp" <<'PY'
import random, sys
r = random.Random(20261105)
words = ("user login failed cache hit miss request served session opened closed pending "
         "running retry timeout queue worker started stopped sync backup network latency ok "
         "warning token refresh upload download").split()
out = []
with open(sys.argv[1], "w") as f:
    for i in range(2500000):
        body = [r.choice(words) for _ in range(r.randint(4, 8))]
        x = r.random()
        if x < 0.001:
            body.insert(r.randint(0, len(body)), "needle")
        elif x < 0.081:
            body = ["error"] + body[:3] + ["disk"] + body[3:]
        if r.random() < 0.02:
            line = "the " + " ".join(body)
        else:
            minute = i // 1700
            line = "2026-11-%02d %02d:%02d %s" % (1 + minute // 1440 % 28, minute // 60 % 24, minute % 60, " ".join(body))
        out.append(line)
        if len(out) == 100000:
            f.write("\n".join(out) + "\n")
            out = []
    f.write("\n".join(out) + "\n")
PY
    mv "$log.tmp" "$log"
fi

# Same lines from all three, or the timing means nothing.
for pattern; do
    ours=$("$kzbs" grep --raw "$pattern" "$log" | cksum)
    for other in "grep -E" "rg --no-filename --no-line-number --color=never"; do
        # shellcheck disable=SC2086 # the tool's words
        theirs=$($other "$pattern" "$log" | cksum)
        [ "$ours" = "$theirs" ] || { echo "grep_end_to_end: $other prints other lines for '$pattern'" >&2; exit 1; }
    done
done

# hyperfine's warnings (outliers on a busy machine) go to a file, shown
# only when it fails.
warnings="$build/grep_end_to_end.warnings"
timed() { hyperfine "$@" >/dev/null 2>"$warnings" || { cat "$warnings" >&2; exit 1; }; }
median() { python3 -c 'import json,sys; print(" ".join("%.6f" % r["median"] for r in json.load(open(sys.argv[1]))["results"]))' "$1"; }
# CPU time (user + system, mean): on a shared machine a process waits for a
# core, which the elapsed time counts and this does not.
cpu() { python3 -c 'import json,sys; print(" ".join("%.6f" % (r["user"] + r["system"]) for r in json.load(open(sys.argv[1]))["results"]))' "$1"; }
json="$build/grep_end_to_end.json"
for pattern; do
    timed -N --style none --warmup 2 --runs "$runs" --output=pipe --export-json "$json" \
        "$kzbs grep --raw '$pattern' $log" "grep -E '$pattern' $log" "rg '$pattern' $log"
    echo "$(median "$json") $(cpu "$json")" | {
        read -r ours grep rg oursCpu grepCpu rgCpu
        python3 -c 'import sys; o, g, r, oc, gc, rc = map(float, sys.argv[2:]); print("grep_end_to_end/%s vs_grep=%.2f vs_ripgrep=%.2f  (kzbs %.3f s, grep %.3f s, rg %.3f s; CPU time vs_grep=%.2f vs_ripgrep=%.2f)" % (sys.argv[1], g / o, r / o, o, g, r, gc / oc, rc / oc))' \
            "$pattern" "$ours" "$grep" "$rg" "$oursCpu" "$grepCpu" "$rgCpu"
    }
done

timed -N --style none --warmup 3 --runs 30 --output=null --export-json "$json" \
    "$kzbs --version" "grep --version" "rg --version"
median "$json" | {
    read -r ours grep rg
    python3 -c 'import sys; o, g, r = map(float, sys.argv[1:]); print("grep_end_to_end/startup kzbs=%.1fms grep=%.1fms rg=%.1fms" % (o * 1e3, g * 1e3, r * 1e3))' \
        "$ours" "$grep" "$rg"
}
