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
build=${1:-build}
batch=$build/bin/reelwright-batch
[ -x "$batch" ] || { echo "build $batch first" >&2; exit 1; }

cache=bench/cache
mkdir -p "$cache"
encode() {   # out, seconds, hue
  ffmpeg -y -v error -nostdin \
    -f lavfi -i "testsrc2=size=1280x720:rate=25" -f lavfi -i "sine=frequency=440:sample_rate=48000" \
    -t "$2" -vf "hue=h=$3" -c:v libx264 -preset veryfast -profile:v high -g 30 \
    -b:v 10M -maxrate 10M -bufsize 5M -pix_fmt yuv420p -x264-params aud=1 \
    -c:a pcm_s16le -ac 2 "$1"
}
original=$cache/sowt_1g.mov
sample=$cache/sowt_sample.mov
if [ ! -s "$original" ]; then
  echo "making $original (once)..."
  encode "$cache/.sowt_40s.mov" 40 0
  ffmpeg -y -v error -nostdin -stream_loop 30 -i "$cache/.sowt_40s.mov" -c copy -fs 1000000000 "$cache/.sowt_1g.mov"
  mv "$cache/.sowt_1g.mov" "$original"
  rm -f "$cache/.sowt_40s.mov"
fi
if [ ! -s "$sample" ]; then
  encode "$cache/.sowt_sample.mov" 20 90
  mv "$cache/.sowt_sample.mov" "$sample"
fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
. bench/lib.sh
# The damaged file: everything ahead of the movie.
head -c "$(moov_offset "$original")" "$original" > "$work/clip.mov"
size=$(stat -c %s "$work/clip.mov")

echo "input: $size bytes"
cat "$work/clip.mov" "$original" >/dev/null   # warm the page cache
report() { printf '%-22s %8.2f s %10d KiB\n' "$1" "$2" "$3"; }
# Each is run twice after a sync, and the faster run counts: the machine's
# page cache makes single runs of gigabyte writes vary widely.
best() { awk -v a="$1" -v b="$2" 'BEGIN { print (a < b ? a : b) }'; }
copy_best=999999; repair_best=999999
for round in 1 2; do
  sync
  timed copy ffmpeg -v error -nostdin -y -i "$original" -c copy "$work/copy.mov"
  copy_best=$(best "$copy_best" "$copy_wall")
  rm -f "$work/copy.mov"
  rm -rf "$work/Repaired"
  sync
  timed repair "$batch" --reference "$sample" --work-root "$work" "$work/clip.mov"
  repair_best=$(best "$repair_best" "$repair_wall")
done
report "ffmpeg -c copy" "$copy_best" "$copy_kib"
report "repair" "$repair_best" "$repair_kib"
scan=$(grep -ao 'Index scan: .*' "$work/repair.err" || true)
echo "$scan"
out=$work/Repaired/clip.mov
[ -s "$out" ] || { echo "no output" >&2; exit 1; }
echo "output: $(stat -c %s "$out") bytes, $(ffprobe -v error -select_streams a:0 -show_entries stream=codec_tag_string -of csv=p=0 "$out") sound"
awk -v r="$repair_best" -v c="$copy_best" 'BEGIN { printf "repair / ffmpeg copy = %.2f (target <= 4)\n", r / c }'
rate=$(echo "$scan" | grep -o '([0-9]* MB/s)' | tr -dc 0-9)
[ -n "$rate" ] && echo "index scan: $rate MB/s (target >= 150)"
