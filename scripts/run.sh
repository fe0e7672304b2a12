#!/usr/bin/env bash
# Installs what is missing, builds, and starts the program.
set -euo pipefail
cd "$(dirname "$0")/.."
REELWRIGHT_EXTRA_PACKAGES="fonts-noto-cjk" scripts/setup.sh build
exec build/bin/reelwright
