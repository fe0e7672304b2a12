#!/usr/bin/env bash
# Repair matrix for QuickTime-family files (mov, mp4, 3gp) whose movie is
# damaged or lost: H.264, HEVC, MJPEG, ProRes and MPEG-4 video with AAC, PCM
# or no sound, each damaged five ways (healthy, zeroed tables, movie cut off,
# holes in the media data, half the file) and repaired by the batch runner,
# with the recording's sample when the first pass cannot. One line per case
# and damage: expected and bit-exact frames against the healthy recording,
# decoded frames, sound and video seconds, repair time and the verdicts.
#   bench/qt_matrix.sh [--build DIR] [--only REGEX] [--seconds N] [--size WxH] [--jobs N]
# Defaults: build, every case, 12 s, 320x240, one job. The recordings are
# made once into bench/cache/qt_matrix/. The logic is in qt_matrix.py.
set -euo pipefail
cd "$(dirname "$0")/.."
exec python3 bench/qt_matrix.py "$@"
