#!/usr/bin/env bash
# Builds every fuzz target with clang (libFuzzer + AddressSanitizer + UndefinedBehaviorSanitizer)
# in build-fuzz and runs each from its checked-in seeds for a share of a time budget.
#   scripts/fuzz.sh [SECONDS [TARGET...]]
# SECONDS is the budget for all targets together (default 300, the CI run); TARGET names a surface
# (a folder of tests/fuzz/) to run alone. A finding stops the script with its report, and its
# input is kept in tests/fuzz/<surface>/regressions/, which the replay tests play from then on:
# commit it with the fix.
set -euo pipefail
cd "$(dirname "$0")/.."
budget=${1:-300}
shift || true
dir=build-fuzz

if [ $# -gt 0 ]; then
    targets=("$@")
else
    targets=()
    for corpus in tests/fuzz/*/corpus; do
        targets+=("$(basename "$(dirname "$corpus")")")
    done
fi
share=$((budget / ${#targets[@]}))
[ "$share" -ge 1 ] || share=1

# -O1 with line tables only: quick to build on a CI machine and enough for readable reports. The
# build type is one of our own so CMake adds no optimisation flags of its own.
flags="-O1 -gline-tables-only -fsanitize=fuzzer-no-link"
if [ ! -f "$dir/build.ninja" ]; then
    CC=clang CXX=clang++ cmake -S . -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=Fuzz \
        -DCAMEXT_BUILD_FUZZ=ON -DCAMEXT_BUILD_TESTS=OFF -DCAMEXT_BUILD_BENCH=OFF \
        -DCAMEXT_SANITIZE=asan -DCMAKE_C_FLAGS="$flags" -DCMAKE_CXX_FLAGS="$flags" >/dev/null
fi
cmake --build "$dir" --target fuzzers

for surface in "${targets[@]}"; do
    binary="$dir/bin/${surface}_fuzzer"
    if [ ! -x "$binary" ]; then
        echo "fuzz: no target for '$surface' (expected $binary)" >&2
        exit 2
    fi
    # What the fuzzer learns stays in build-fuzz/corpus/<surface> for the next local run; the
    # checked-in seeds are only read.
    work="$dir/corpus/$surface"
    kept="tests/fuzz/$surface/regressions"
    mkdir -p "$work" "$kept"
    log="$dir/$surface.log"
    # One second per input and 2 GB are the limits: beyond them an input is a finding.
    if ! ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
        "$binary" -max_total_time="$share" -timeout=1 -rss_limit_mb=2048 -print_final_stats=1 \
        -artifact_prefix="$kept/" "$work" "tests/fuzz/$surface/corpus" >"$log" 2>&1; then
        tail -n 80 "$log"
        echo "$surface fuzzer: FINDING, input kept in $kept/"
        exit 1
    fi
    rmdir --ignore-fail-on-non-empty "$kept"
    echo "$surface fuzzer: no finding in ${share}s; $(grep -E '^Done' "$log")"
done
