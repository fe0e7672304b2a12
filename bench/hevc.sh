#!/usr/bin/env bash
# Times the repair of a 1 GB HEVC (hvc1) + AAC file whose movie was cut off,
# from a sample, against reading it and against a stream copy of the healthy
# original by ffmpeg.
#   bench/hevc.sh [BUILD_DIR]     (default build; needs reelwright-batch built)
# The inputs (720p, 10 Mbit/s, libx265 ultrafast, key frame every 25 frames,
# AAC 48 kHz stereo) are made once into bench/cache/: a 40 s clip is encoded
# and looped by stream copy up to 1 GB.
# Target: the stream scan at 150 MB/s or more.
set -euo pipefail
cd "$(dirname "$0")/.."
. bench/lib.sh
bench_init "${1:-build}"

encode() {   # out, seconds, hue
  ffmpeg -y -v error -nostdin \
    -f lavfi -i "testsrc2=size=1280x720:rate=25" -f lavfi -i "sine=frequency=440:sample_rate=48000" \
    -t "$2" -vf "hue=h=$3" -c:v libx265 -preset ultrafast -x265-params "log-level=error:keyint=25" \
    -b:v 10M -tag:v hvc1 -pix_fmt yuv420p -c:a aac -ac 2 -b:a 128k "$1"
}
original=$cache/hevc_1g.mov
sample=$cache/hevc_sample.mov
make_camera_files encode "$original" "$sample" 1000000000 20

cut_movie "$original" "$work/clip.mov"
size=$(stat -c %s "$work/clip.mov")

echo "input: $size bytes"
cat "$work/clip.mov" "$original" >/dev/null   # warm the page cache
timed cat sh -c "cat '$work/clip.mov' > /dev/null"
report "cat > /dev/null" "$cat_wall" "$cat_kib"
copy_and_repair "$original" "$sample" "$work/clip.mov" "$batch"
scan_alone "$sample" "$work/clip.mov" "$batch"
scan=$scan_line
echo "$scan"
out=$work/Repaired/clip.mov
[ -s "$out" ] || { echo "no output" >&2; exit 1; }
echo "output: $(stat -c %s "$out") bytes"
rate=$(sed -n 's/.*(\([0-9]*\) MB\/s).*/\1/p' <<<"$scan")
[ -n "$rate" ] && awk -v r="$rate" 'BEGIN { printf "scan rate %d MB/s (target >= 150)\n", r }'
