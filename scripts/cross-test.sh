#!/usr/bin/env bash
# Builds the library, the simulator and the tests for AArch64 with Debian's cross toolchain and
# arm64 multiarch packages, and runs the whole suite under qemu-user; then compiles the library
# for 32-bit ARM, where long is 32 bits, to check the code that handles the contract's long
# parameters. Installs what it needs (root or sudo). Usage: scripts/cross-test.sh [BUILD_DIR]
set -euo pipefail
cd "$(dirname "$0")/.."
dir=${1:-build-aarch64}
jobs=$(nproc)

SUDO=""
if [ "$(id -u)" -ne 0 ]; then SUDO="sudo"; fi
export DEBIAN_FRONTEND=noninteractive

packages=(
    g++-aarch64-linux-gnu g++-arm-linux-gnueabihf qemu-user cmake ninja-build pkg-config
    libc6-dev:arm64 libstdc++-12-dev:arm64
    android-libutils-dev:arm64 android-libcutils-dev:arm64 android-liblog-dev:arm64
    android-libbase-dev:arm64 libjson-c-dev:arm64 libxml2-dev:arm64
    libgtest-dev:arm64 libgmock-dev:arm64
)
missing=()
for p in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
        missing+=("$p")
    fi
done
if [ ${#missing[@]} -ne 0 ]; then
    echo "Installing: ${missing[*]}"
    if ! dpkg --print-foreign-architectures | grep -qx arm64; then
        $SUDO dpkg --add-architecture arm64
    fi
    $SUDO apt-get update -qq
    $SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi

# Debian's arm64 libbacktrace, which libutils loads, needs 7z.so from /usr/lib/p7zip: a path
# that the build machine's own p7zip holds. The arm64 copy is unpacked into a root of its own,
# where the linker (-rpath-link) and qemu (QEMU_LD_PREFIX) find it.
mkdir -p "$dir"
extra_root="$(cd "$dir" && pwd)/arm64-root"
if [ ! -f "$extra_root/usr/lib/p7zip/7z.so" ]; then
    tmp=$(mktemp -d)
    (cd "$tmp" && apt-get download -qq p7zip-full:arm64 2>/dev/null)
    dpkg-deb -x "$tmp"/p7zip-full_*_arm64.deb "$extra_root"
    rm -rf "$tmp"
fi
export QEMU_LD_PREFIX="$extra_root"

# AArch64: char is unsigned, long is 64-bit. Every test runs under qemu-aarch64.
cmake -S . -B "$dir" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$PWD/scripts/aarch64-linux-gnu.cmake" \
    -DCMAKE_EXE_LINKER_FLAGS="-Wl,-rpath-link,$extra_root/usr/lib/p7zip" \
    -DCAMEXT_BUILD_BENCH=OFF >/dev/null
cmake --build "$dir" -- -k 0
(cd "$dir" && ctest --output-on-failure -j"$jobs")

# 32-bit ARM: long and unsigned long are 32 bits there (vendor ids and other 64-bit values the
# contract passes as long). Compiling the library with the project's warnings is the check.
armhf_flags=(-std=c++17 -fsyntax-only -Wall -Wextra -Werror -Wno-unused-parameter
    -DANDROID_SMP=1 -D_GNU_SOURCE
    -Ihost/include -Icontract/include -Iframeworks/cameraservice
    -isystem /usr/include/android -isystem /usr/include/libxml2)
failed=0
for src in $(find frameworks/cameraservice -name '*.cpp' | sort); do
    if ! arm-linux-gnueabihf-g++ "${armhf_flags[@]}" "$src"; then
        echo "32-bit ARM: $src does not compile" >&2
        failed=1
    fi
done
if [ "$failed" -ne 0 ]; then exit 1; fi
echo "32-bit ARM: every library source compiles"
