#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test (GUI tests run offscreen).
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
bash scripts/build.sh
export QT_QPA_PLATFORM=offscreen
cd "${OSTRIVEX_BUILD_DIR:-build}"
ctest --output-on-failure --parallel "$(nproc)" --timeout 600
