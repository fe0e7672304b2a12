#!/usr/bin/env bash
# Times the repair of a 1 GB H.264 + sowt (16-bit little-endian PCM) camera
# file whose movie was cut off, from a sample, against a stream copy of the
# healthy original by ffmpeg.
#   bench/sowt.sh [BUILD_DIR]     (default build; needs reelwright-batch built)
# The inputs (720p, 10 Mbit/s, high profile, GOP 30, access unit delimiters,
# PCM 48 kHz stereo) are made once into bench/cache/: a 40 s clip is encoded
# and looped by stream copy.
# Targets: the index scan at 150 MB/s or more, the whole repair (scan,
# rebuild and its speed check) at most 4 times the stream copy.
set -euo pipefail
cd "$(dirname "$0")/.."
. bench/lib.sh
bench_init "${1:-build}"

encode() {   # out, seconds, hue
  ffmpeg -y -v error -nostdin \
    -f lavfi -i "testsrc2=size=1280x720:rate=25" -f lavfi -i "sine=frequency=440:sample_rate=48000" \
    -t "$2" -vf "hue=h=$3" -c:v libx264 -preset veryfast -profile:v high -g 30 \
    -b:v 10M -maxrate 10M -bufsize 5M -pix_fmt yuv420p -x264-params aud=1 \
    -c:a pcm_s16le -ac 2 "$1"
}
original=$cache/sowt_1g.mov
sample=$cache/sowt_sample.mov
make_camera_files encode "$original" "$sample" 1000000000 20

cut_movie "$original" "$work/clip.mov"
size=$(stat -c %s "$work/clip.mov")

echo "input: $size bytes"
cat "$work/clip.mov" "$original" >/dev/null   # warm the page cache
copy_and_repair "$original" "$sample" "$work/clip.mov" "$batch"
scan=$(grep -ao 'Index scan: .*' "$work/repair.err" || true)
echo "$scan"
out=$work/Repaired/clip.mov
[ -s "$out" ] || { echo "no output" >&2; exit 1; }
echo "output: $(stat -c %s "$out") bytes, $(ffprobe -v error -select_streams a:0 -show_entries stream=codec_tag_string -of csv=p=0 "$out") sound"
awk -v r="$repair_best" -v c="$copy_best" 'BEGIN { printf "repair / ffmpeg copy = %.2f (target <= 4)\n", r / c }'
rate=$(echo "$scan" | grep -o '([0-9]* MB/s)' | tr -dc 0-9)
[ -n "$rate" ] && echo "index scan: $rate MB/s (target >= 150)"
