#!/usr/bin/env bash
# Installs every Debian package that building, running and testing Ostrivex needs.
# Packages already present are not fetched again, so a second run returns at once.
set -euo pipefail

PKGS=(
  build-essential cmake ninja-build pkg-config
  qt6-base-dev qt6-base-dev-tools qt6-svg-dev libgl-dev
  libfreeimage-dev libdevil-dev libgcab-dev libimagequant-dev libgif-dev libpng-dev
  libwmf-dev libemf2svg-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  imagemagick cabextract xvfb xauth ccache xdotool fonts-dejavu-core
  libxcb1-dev dbus-daemon poppler-utils openbox
  graphicsmagick libvips-tools hyperfine shared-mime-info
)

missing=()
for p in "${PKGS[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -gt 0 ]; then
  SUDO=""
  if [ "$(id -u)" -ne 0 ]; then SUDO="sudo"; fi
  echo "Installing: ${missing[*]}"
  $SUDO apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
