#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test: the normal build, then the same tests
# under AddressSanitizer + UndefinedBehaviorSanitizer, then the concurrency tests under
# ThreadSanitizer, then the fuzz targets.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
jobs=$(nproc)

scripts/build.sh build
(cd build && ctest --output-on-failure -j"$jobs")

scripts/build.sh build-asan -DCAMEXT_SANITIZE=asan -DCAMEXT_BUILD_BENCH=OFF
(cd build-asan && ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 \
    ctest --output-on-failure -j"$jobs")

# ThreadSanitizer needs clang (g++ refuses libutils' fences). Only the tests labelled
# "concurrency" run here, the storm and every test that drives hooks, managers or stand-ins from
# several threads, so only what they need is built (their executables, the shared library and
# camext). tests/tsan.supp says what it leaves out.
if [ ! -f build-tsan/build.ninja ]; then
    CC=clang CXX=clang++ cmake -S . -B build-tsan -G Ninja -DCAMEXT_SANITIZE=tsan \
        -DCAMEXT_BUILD_BENCH=OFF >/dev/null
fi
cmake --build build-tsan --target concurrency_tests
suppressions="$(pwd)/tests/tsan.supp"
(cd build-tsan && TSAN_OPTIONS="suppressions=$suppressions:halt_on_error=1:second_deadlock_stack=1" \
    ctest --output-on-failure -j"$jobs" -L concurrency)

scripts/fuzz.sh
