#!/usr/bin/env bash
# Times the ASF/WMV and FLV repair of 500 MB files against cp.
#   bench/asf_flv.sh [BUILD_DIR]     (default build; needs reelwright-batch built)
# The inputs (WMV2 with WMA2 in .wmv, Sorenson video with MP3 in .flv) are made
# once into bench/cache/. Figures: wall time, throughput and peak memory of
# each step, and the ratio of repair to cp.
set -euo pipefail
cd "$(dirname "$0")/.."
. bench/lib.sh
bench_init "${1:-build}"

make_input() {   # name, ffmpeg output args...
  local name=$1; shift
  [ -s "$cache/$name" ] && return
  echo "making $cache/$name (once)..."
  # 8 Mbit/s at 25 fps: about 40 KB per frame; noise keeps the encoders at
  # that rate without stuffing. -fs stops near 500 MB.
  ffmpeg -y -v error -nostdin -f lavfi -i "testsrc2=size=640x480:rate=25:duration=1200" \
    -f lavfi -i "sine=frequency=440:sample_rate=44100:duration=1200" -vf noise=alls=20:allf=t \
    "$@" -fs 500000000 "$cache/.tmp_$name"
  mv "$cache/.tmp_$name" "$cache/$name"
}
make_input wmv_500m.wmv -c:v wmv2 -b:v 8M -c:a wmav2 -b:a 128k
make_input flv_500m.flv -c:v flv1 -b:v 8M -c:a libmp3lame -b:a 128k

timed() {   # label, size in bytes, command...: wall seconds, MB/s, peak KiB
  local label=$1 size=$2; shift 2
  /usr/bin/time -v -o "$work/time" "$@" >/dev/null
  # "Elapsed (wall clock) time (h:mm:ss or m:ss): 1:02.34"
  wall=$(awk -F': ' '/Elapsed \(wall clock\)/ { n = split($2, t, ":"); s = 0;
                      for (i = 1; i <= n; ++i) s = s * 60 + t[i]; print s }' "$work/time")
  rss=$(awk -F': ' '/Maximum resident set size/ { print $2 }' "$work/time")
  awk -v l="$label" -v w="$wall" -v r="$rss" -v b="$size" \
    'BEGIN { printf "%-24s %8.2f s %9.1f MB/s %10d KiB\n", l, w, (w > 0 ? b / 1e6 / w : 0), r }'
  last=$wall
}

for f in wmv_500m.wmv flv_500m.flv; do
  cp "$cache/$f" "$work/$f"
  size=$(stat -c %s "$work/$f")
  echo "input: $f $size bytes"
  cat "$work/$f" >/dev/null   # warm the page cache for every step alike
  timed "cat $f" "$size" sh -c "cat '$work/$f' > /dev/null"
  timed "cp $f" "$size" cp "$work/$f" "$work/copy_$f"; cp_s=$last
  rm -f "$work/copy_$f"
  timed "repair $f" "$size" "$batch" --quiet --work-root "$work" "$work/$f"; rep_s=$last
  out=$work/Repaired/$f
  [ -s "$out" ] || { echo "no output for $f" >&2; exit 1; }
  echo "output: $(stat -c %s "$out") bytes"
  awk -v r="$rep_s" -v c="$cp_s" 'BEGIN { printf "ratio repair/cp: %.2f (target <= 3)\n", (c > 0 ? r / c : 0) }'
  rm -rf "$work/Repaired"
done
