#!/usr/bin/env bash
# Installs the Debian packages the build and the tests need (only what is
# missing), then configures and builds into the given folder.
#   scripts/setup.sh BUILD_DIR [extra cmake arguments...]
set -euo pipefail
cd "$(dirname "$0")/.."

packages=(cmake g++ make pkg-config qtbase5-dev qtbase5-dev-tools qttools5-dev qttools5-dev-tools
          libqt5svg5-dev qttranslations5-l10n libx11-dev ffmpeg xvfb xauth fonts-noto-core fonts-noto-cjk curl libfaad-dev
          dpkg-dev file parallel)
packages+=(${REELWRIGHT_EXTRA_PACKAGES:-})
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  echo "Installing: ${missing[*]}"
  sudo=""
  [ "$(id -u)" -eq 0 ] || sudo="sudo"
  $sudo apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
fi

build="$1"; shift
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@" >/dev/null
cmake --build "$build" -j "$(nproc)"
