#!/usr/bin/env bash
# Sets up, builds, and shows the demo station's settings.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
scripts/build.sh
"${BUILD_DIR:-build}"/apps/station-config/station-config status "$@"
