#!/bin/bash
# MJPEG route speed: a ~500 MB MJPEG + PCM .mov made once into bench/cache,
# then cp of the file against a whole repair (movie search, scan, rebuild)
# through reelwright-batch, with wall time and peak memory of each.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
build=${BUILD:-$here/../build-rebuild}
cache=$here/cache
mkdir -p "$cache"
src=$cache/mjpeg_500mb.mov
if [ ! -s "$src" ]; then
  ffmpeg -y -v error -nostdin -f lavfi -i testsrc2=size=1280x720:rate=25:duration=160 \
    -f lavfi -i sine=frequency=440:sample_rate=48000:duration=160 \
    -c:v mjpeg -q:v 2 -c:a pcm_u8 "$src"
fi
size=$(stat -c %s "$src")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp "$src" "$work/in.mov"
cat "$work/in.mov" > /dev/null   # both runs start from the page cache

t0=$(date +%s.%N); cp "$work/in.mov" "$work/copy.mov"; sync; t1=$(date +%s.%N)
rm -f "$work/copy.mov"
cp_s=$(echo "$t1 - $t0" | bc -l)

/usr/bin/time -v "$build/bin/reelwright-batch" --quiet "$work/in.mov" > "$work/out.json" 2> "$work/time.txt"
sync
rep_s=$(grep "Elapsed (wall clock)" "$work/time.txt" | awk '{print $NF}' | awk -F: '{ if (NF==3) print $1*3600+$2*60+$3; else print $1*60+$2 }')
peak_kb=$(grep "Maximum resident set size" "$work/time.txt" | awk '{print $NF}')

printf 'file            %d MB\n' $((size / 1000000))
printf 'cp              %.2f s\n' "$cp_s"
printf 'whole repair    %.2f s  (%.2f x cp)\n' "$rep_s" "$(echo "$rep_s / $cp_s" | bc -l)"
printf 'repair rate     %.0f MB/s (scan + rebuild + movie search)\n' "$(echo "$size / 1000000 / $rep_s" | bc -l)"
printf 'peak memory     %d MB\n' $((peak_kb / 1024))
cat "$work/out.json"
