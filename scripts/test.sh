#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test: the normal build, then the same tests
# under AddressSanitizer + UndefinedBehaviorSanitizer.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
jobs=$(nproc)

scripts/build.sh build
(cd build && ctest --output-on-failure -j"$jobs")

scripts/build.sh build-asan -DCAMEXT_SANITIZE=asan -DCAMEXT_BUILD_BENCH=OFF
(cd build-asan && ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 \
    ctest --output-on-failure -j"$jobs")
scripts/fuzz.sh
