#!/usr/bin/env bash
# Sets up, builds and runs every test (unit and integration against a loopback SMB server).
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
scripts/build.sh
ctest --test-dir "${BUILD_DIR:-build}" --output-on-failure --timeout 300 "$@"
