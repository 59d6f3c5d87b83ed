#!/usr/bin/env bash
# Runs every libFuzzer harness of a sanitizer build for FUZZ_SECONDS (default 60) each, two at a
# time, from the seed corpora under fuzz/corpus/ (copied: new inputs stay out of the tree).
# A crash leaves its input under $FUZZ_BUILD_DIR/fuzz-artifacts/ and fails the script.
set -euo pipefail
cd "$(dirname "$0")/.."
build_dir=${FUZZ_BUILD_DIR:-build-san}
seconds=${FUZZ_SECONDS:-60}
artifacts="$build_dir/fuzz-artifacts"
mkdir -p "$artifacts"
export ASAN_OPTIONS="detect_leaks=1:fast_unwind_on_malloc=0:detect_odr_violation=0:${ASAN_OPTIONS:-}"
export LSAN_OPTIONS="suppressions=$PWD/scripts/sanitizers/lsan.supp:print_suppressions=0:${LSAN_OPTIONS:-}"

run_one() {
    local name=$1 corpus="$build_dir/fuzz-corpus/$1"
    rm -rf "$corpus"; mkdir -p "$corpus"; cp fuzz/corpus/"$name"/* "$corpus"/
    if "$build_dir/fuzz/fuzz_$name" -max_total_time="$seconds" -rss_limit_mb=2048 -timeout=20 \
        -artifact_prefix="$artifacts/$name-" -print_final_stats=1 "$corpus" >"$artifacts/$name.log" 2>&1; then
        echo "fuzz_$name: $(grep -m1 'stat::number_of_executed_units' "$artifacts/$name.log" | awk '{print $2}') runs in ${seconds} s, no crash"
    else
        echo "fuzz_$name: FAILED"; tail -40 "$artifacts/$name.log"; return 1
    fi
}

names=(settings preconfiguration package password folders translation)
status=0
for ((i = 0; i < ${#names[@]}; i += 2)); do
    run_one "${names[i]}" & first=$!
    second=""
    if [ $((i + 1)) -lt ${#names[@]} ]; then run_one "${names[i + 1]}" & second=$!; fi
    wait $first || status=1
    [ -z "$second" ] || wait $second || status=1
done
exit $status
