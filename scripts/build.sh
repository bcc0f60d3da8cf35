#!/usr/bin/env bash
# Configures and builds Ostrivex into build/ (or $OSTRIVEX_BUILD_DIR).
set -euo pipefail
cd "$(dirname "$0")/.."
BUILD_DIR=${OSTRIVEX_BUILD_DIR:-build}
GEN=()
if command -v ninja >/dev/null 2>&1; then GEN=(-G Ninja); fi
if [ ! -f "$BUILD_DIR/CMakeCache.txt" ]; then
  cmake -S . -B "$BUILD_DIR" "${GEN[@]}" -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@"
fi
cmake --build "$BUILD_DIR" --parallel "$(nproc)"
