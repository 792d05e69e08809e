#!/usr/bin/env bash
# Installs what the build and the tests need on Debian 12. Idempotent: when everything is
# present it only checks and returns.
set -euo pipefail

packages=(
    g++ clang cmake ninja-build pkg-config python3
    libjson-c-dev libxml2-dev
    android-libutils-dev android-liblog-dev android-libcutils-dev android-libbase-dev
    googletest libgtest-dev libgmock-dev libbenchmark-dev
    libclang-rt-14-dev
)

missing=()
for p in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
        missing+=("$p")
    fi
done

if [ ${#missing[@]} -eq 0 ]; then
    exit 0
fi

echo "Installing: ${missing[*]}"
SUDO=""
if [ "$(id -u)" -ne 0 ]; then SUDO="sudo"; fi
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -qq
$SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
