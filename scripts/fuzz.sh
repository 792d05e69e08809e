#!/usr/bin/env bash
# Builds the transaction fuzzer with clang (libFuzzer + AddressSanitizer + UndefinedBehaviorSanitizer)
# in build-fuzz and runs it from its seeds for a bounded time. Exits non-zero on a finding, whose
# input is left in build-fuzz/findings/.  Usage: scripts/fuzz.sh [SECONDS]   (default 60)
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-60}
dir=build-fuzz

# -O1 with line tables only: quick to build on a CI machine and enough for readable reports. The
# build type is one of our own so CMake adds no optimisation flags of its own.
flags="-O1 -gline-tables-only -fsanitize=fuzzer-no-link"
if [ ! -f "$dir/build.ninja" ]; then
    CC=clang CXX=clang++ cmake -S . -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=Fuzz \
        -DCAMEXT_BUILD_FUZZ=ON -DCAMEXT_BUILD_TESTS=OFF -DCAMEXT_BUILD_BENCH=OFF \
        -DCAMEXT_SANITIZE=asan -DCMAKE_C_FLAGS="$flags" -DCMAKE_CXX_FLAGS="$flags" >/dev/null
fi
cmake --build "$dir" --target transact_fuzzer transact_fuzz_seeds

# The seeds are rewritten each run; what the fuzzer learns stays in corpus/ for the next run.
rm -rf "$dir/seeds"
mkdir -p "$dir/corpus" "$dir/findings"
"$dir/bin/transact_fuzz_seeds" --write "$dir/seeds"

# libFuzzer's running commentary goes to a log; a finding prints its report.
log="$dir/fuzz.log"
if ! ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 \
    "$dir/bin/transact_fuzzer" -max_total_time="$seconds" -timeout=10 -print_final_stats=1 \
    -artifact_prefix="$dir/findings/" "$dir/corpus" "$dir/seeds" >"$log" 2>&1; then
    tail -n 80 "$log"
    echo "transaction fuzzer: FINDING (input in $dir/findings/)"
    exit 1
fi
echo "transaction fuzzer: no finding; $(grep -E '^Done' "$log")"
