#!/usr/bin/env bash
# Installs what is missing, builds, and plays the example device's tour through the library.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
scripts/build.sh build
exec build/bin/camext run examples/device/tour.json
