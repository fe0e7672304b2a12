#!/usr/bin/env bash
# Builds the window program if needed, then shows the main window under Xvfb
# and saves its views as PNG files: page1-empty, page1-files, page2-results.
#   scripts/screenshot.sh OUTDIR
set -euo pipefail
out=${1:?usage: scripts/screenshot.sh OUTDIR}
root=$(cd "$(dirname "$0")/.." && pwd)
build=${REELWRIGHT_BUILD_DIR:-$root/build}

if [ ! -f "$build/CMakeCache.txt" ]; then
    cmake -S "$root" -B "$build" >/dev/null
fi
make -C "$build" -j2 reelwright window_screenshots >/dev/null

mkdir -p "$out"
out=$(cd "$out" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Two small clips and a damaged copy, made fresh: no media is kept in the repository.
ffmpeg -v error -y -f lavfi -i testsrc2=size=320x240:rate=25:duration=2 -f lavfi -i sine=duration=2 \
    -c:v libx264 -pix_fmt yuv420p -c:a aac -shortest "$work/holiday clip.mp4"
ffmpeg -v error -y -f lavfi -i testsrc2=size=320x240:rate=25:duration=2 -c:v mpeg4 "$work/camera_0042.avi"
head -c 60000 "$work/holiday clip.mp4" > "$work/cut recording.mov"

export XDG_CONFIG_HOME="$work/config"
xvfb-run -a -s "-screen 0 1280x800x24" \
    "$build/tests-bin/window_screenshots" "$out" \
    "$work/holiday clip.mp4" "$work/camera_0042.avi" "$work/cut recording.mov"
ls -l "$out"/page1-empty.png "$out"/page1-files.png "$out"/page2-results.png
