#!/usr/bin/env bash
# Builds the window program if needed, then shows the main window under Xvfb
# and saves its views as PNG files: page1-empty, page1-files, page2-results
# and the dialogs of page 2.
#   scripts/screenshot.sh OUTDIR                 English at scale 1.0, into OUTDIR
#   scripts/screenshot.sh OUTDIR all             English, German, Japanese and Hindi at
#                                                scales 1.0 and 1.5, into OUTDIR/<LANG>-<scale>/
#   scripts/screenshot.sh OUTDIR LANGUAGE SCALE  one of them (LANGUAGE a LanguageType: 0 English,
#                                                1 German, 5 Japanese, 10 Hindi...)
set -euo pipefail
out=${1:?usage: scripts/screenshot.sh OUTDIR [all | LANGUAGE SCALE]}
root=$(cd "$(dirname "$0")/.." && pwd)
build=${REELWRIGHT_BUILD_DIR:-$root/build}

if [ ! -f "$build/CMakeCache.txt" ]; then
    cmake -S "$root" -B "$build" >/dev/null
fi
cmake --build "$build" -j2 --target reelwright window_screenshots >/dev/null

mkdir -p "$out"
out=$(cd "$out" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Two small clips and a damaged copy, made fresh: no media is kept in the repository.
ffmpeg -v error -y -f lavfi -i testsrc2=size=320x240:rate=25:duration=2 -f lavfi -i sine=duration=2 \
    -c:v libx264 -pix_fmt yuv420p -c:a aac -shortest "$work/holiday clip.mp4"
ffmpeg -v error -y -f lavfi -i testsrc2=size=320x240:rate=25:duration=2 -c:v mpeg4 "$work/camera_0042.avi"
head -c 60000 "$work/holiday clip.mp4" > "$work/cut recording.mov"

shoot() {   # LANGUAGE SCALE DIR
    mkdir -p "$3"
    rm -rf "$work/config"
    XDG_CONFIG_HOME="$work/config" xvfb-run -a -s "-screen 0 1920x1080x24" \
        "$build/bin/window_screenshots" --language "$1" --scale "$2" "$3" \
        "$work/holiday clip.mp4" "$work/camera_0042.avi" "$work/cut recording.mov"
    ls -l "$3"/page1-empty.png "$3"/page1-files.png "$3"/page2-results.png
}

if [ "${2:-}" = all ]; then
    for scale in 1.0 1.5; do
        for lang in 0:EN 1:DE 5:JA 10:HI; do
            shoot "${lang%%:*}" "$scale" "$out/${lang#*:}-$scale"
        done
    done
elif [ $# -ge 3 ]; then
    shoot "$2" "$3" "$out"
else
    shoot 0 1.0 "$out"
fi
