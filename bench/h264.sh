#!/usr/bin/env bash
# Times the repair of a 500 MB H.264 + AAC camera file whose movie was cut
# off, from a sample, against reading it and against a stream copy of the
# healthy original by ffmpeg.
#   bench/h264.sh [BUILD_DIR]     (default build; needs reelwright-batch built)
# The inputs (720p, 10 Mbit/s, high profile, GOP 30, AAC 48 kHz stereo) are
# made once into bench/cache/: a 40 s clip is encoded and looped by stream copy.
# Targets: the scan at 1000 MB/s or more, the whole repair no longer than
# the stream copy and at most 1.5 times cp of the damaged file, peak memory
# under 100 MB.
set -euo pipefail
cd "$(dirname "$0")/.."
. bench/lib.sh
bench_init "${1:-build}"

encode() {   # out, seconds, hue
  ffmpeg -y -v error -nostdin \
    -f lavfi -i "testsrc2=size=1280x720:rate=25" -f lavfi -i "sine=frequency=440:sample_rate=48000" \
    -t "$2" -vf "hue=h=$3" -c:v libx264 -preset veryfast -profile:v high -g 30 \
    -b:v 10M -maxrate 10M -bufsize 5M -pix_fmt yuv420p -c:a aac -ac 2 -b:a 128k "$1"
}
original=$cache/h264_500m.mov
sample=$cache/h264_sample.mov
make_camera_files encode "$original" "$sample" 500000000 40

cut_movie "$original" "$work/clip.mov"
size=$(stat -c %s "$work/clip.mov")

echo "input: $size bytes"
cat "$work/clip.mov" "$original" >/dev/null   # warm the page cache
timed cat sh -c "cat '$work/clip.mov' > /dev/null"
report "cat > /dev/null" "$cat_wall" "$cat_kib"
best_of_two cp cp "$work/clip.mov" "$work/copy.cp.mov"
report "cp" "$cp_wall" "$cp_kib"
copy_and_repair "$original" "$sample" "$work/clip.mov" "$batch"
scan_alone "$sample" "$work/clip.mov" "$batch"
echo "$scan_line"
out=$work/Repaired/clip.mov
[ -s "$out" ] || { echo "no output" >&2; exit 1; }
echo "output: $(stat -c %s "$out") bytes"
awk -v r="$repair_best" -v c="$copy_best" -v p="$cp_wall" -v k="$repair_kib" 'BEGIN {
  printf "repair / ffmpeg copy = %.2f (target <= 1), repair / cp = %.2f (target <= 1.5), peak %d MB (target < 100)\n",
         r / c, r / p, k / 1024 }'
