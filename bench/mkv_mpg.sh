#!/usr/bin/env bash
# Times the Matroska and MPEG program stream repair of 500 MB files against cp.
#   bench/mkv_mpg.sh [BUILD_DIR]     (default build; needs reelwright-batch built)
# The inputs are made once into bench/cache/ (fast encoders: they only need size).
set -euo pipefail
cd "$(dirname "$0")/.."
. bench/lib.sh
bench_init "${1:-build}"

make_input() {   # name, ffmpeg output args...
  local name=$1; shift
  [ -s "$cache/$name" ] && return
  echo "making $cache/$name (once)..."
  ffmpeg -y -v error -nostdin -f lavfi -i "testsrc2=size=640x480:rate=25:duration=1200" \
    -f lavfi -i "sine=frequency=440:sample_rate=48000:duration=1200" "$@" -fs 500000000 "$cache/.tmp_$name"
  mv "$cache/.tmp_$name" "$cache/$name"
}
make_input mkv_500m.mkv -c:v libx264 -preset ultrafast -b:v 8M -c:a aac
make_input mpg_500m.mpg -c:v mpeg2video -b:v 8M -c:a mp2 -f vob

timed() {   # label, command...
  local label=$1; shift
  /usr/bin/time -f "%e %M" -o "$work/time" "$@" >/dev/null
  read -r wall rss <"$work/time"
  printf '%-26s %8.2f s %10d KiB\n' "$label" "$wall" "$rss"
  last=$wall
}
for f in mkv_500m.mkv mpg_500m.mpg; do
  cp "$cache/$f" "$work/$f"
  echo "input: $f $(stat -c %s "$work/$f") bytes"
  timed "cat $f" sh -c "cat '$work/$f' > /dev/null"
  timed "cp $f" cp "$work/$f" "$work/copy_$f"; cp_s=$last
  rm -f "$work/copy_$f"
  timed "repair $f" "$batch" --quiet "$work/$f"; rep_s=$last
  out=$work/Repaired/$f
  [ -s "$out" ] || { echo "no output for $f" >&2; exit 1; }
  ffprobe -v error -show_entries format=format_name -of csv=p=0 "$out" >/dev/null \
    || { echo "output of $f doesn't open" >&2; exit 1; }
  awk -v r="$rep_s" -v c="$cp_s" -v b="$(stat -c %s "$work/$f")" -v o="$(stat -c %s "$out")" 'BEGIN {
    printf "output: %d bytes; repair %.1f MB/s; ratio repair/cp: %.2f (target <= 3)\n",
           o, (r > 0 ? b / 1e6 / r : 0), (c > 0 ? r / c : 0) }'
  rm -rf "$work/Repaired"
done
