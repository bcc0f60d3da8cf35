#!/usr/bin/env bash
# Installs what is missing, builds, and starts the editor.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
bash scripts/build.sh
exec "${OSTRIVEX_BUILD_DIR:-build}/bin/ostrivex"
