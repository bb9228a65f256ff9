#!/bin/sh
# run.sh TARGETS SECONDS [NAME...]: fuzzes each reader for so long, from the seeds of the repository and from what earlier
# runs have found, which is kept beside the targets. An input that breaks a promise is left there as crash-..., timeout-...
# or oom-...; the reader is to be mended, and the input made small joins the seeds (target -minimize_crash=1 FILE).
set -eu
targets=$1
seconds=$2
shift 2
here=$(cd "$(dirname "$0")" && pwd)
for name in ${*:-composition preset gltf plate plugin_file command_line}; do
    found=$targets/found/$name
    mkdir -p "$found"
    echo "fuzzing $name for $seconds s"
    log=$found.log
    if ! "$targets/fuzz_$name" -max_total_time="$seconds" -timeout=25 -rss_limit_mb=1024 -max_len=4000 -use_value_profile=1 \
        -print_final_stats=1 -dict="$here/dictionaries/$name.dict" -artifact_prefix="$targets/found/$name-" \
        "$found" "$here/corpus/$name" 2>"$log"; then
        tail -n 40 "$log" >&2
        exit 1
    fi
    # Branches reached, inputs tried, and the most memory held.
    sed -nE 's/.*DONE +(cov: [0-9]+).*/    \1/p; s/^stat::(number_of_executed_units|peak_rss_mb): +/    \1: /p' "$log"
done
