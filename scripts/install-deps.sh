#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The tarvik authors
# SPDX-License-Identifier: GPL-3.0-or-later

# Installs every Debian 12 package that building, running and testing tarvik needs.
# Safe to run again: packages already present are skipped.
set -euo pipefail

PACKAGES=(
  build-essential cmake ninja-build pkg-config git
  clang libclang-rt-14-dev llvm
  qt6-base-dev qt6-base-dev-tools libqt6sql6-sqlite libqt6opengl6-dev
  qt6-positioning-dev libqt6positioning6-plugins
  qt6-webengine-dev qt6-webchannel-dev
  qt6-svg-dev libqt6svg6
  qt6-tools-dev-tools qdbus-qt6
  qt6-tools-dev qt6-l10n-tools qt6-translations-l10n
  libgl-dev libxkbcommon-dev libx11-dev libxdamage-dev
  libsqlite3-dev sqlite3 zlib1g-dev libfontconfig-dev
  dbus dbus-daemon dbus-x11
  xvfb xauth x11-utils imagemagick librsvg2-bin
  qt6-wayland weston
  evolution-data-server libebook1.2-dev libebook-contacts1.2-dev libedataserver1.2-dev
  libjs-leaflet
  libbenchmark-dev
  appstream desktop-file-utils systemd
  at-spi2-core python3-pyatspi gir1.2-atspi-2.0 python3-gi dunst
  reuse debhelper lintian
  fonts-dejavu-core
  libstrophe-dev libsecret-1-dev prosody python3-slixmpp openssl
)

missing=()
for p in "${PACKAGES[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

SUDO=""
if [ "$(id -u)" -ne 0 ]; then SUDO="sudo"; fi
echo "install-deps: installing ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -qq
$SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
