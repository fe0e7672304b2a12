#!/bin/bash
# MJPEG route speed: a ~500 MB MJPEG + PCM .mov made once into bench/cache,
# then cp of the file against a whole repair (movie search, frame scan,
# rebuild) through reelwright-batch, with wall time and peak memory of each.
# Both sides end with sync, so both pay for getting their output to disk.
#
#   BUILD=<build dir> bench/mjpeg.sh
#
# Targets: repair rate >= 200 MB/s (the scan alone is faster still, as the
# rate counts the rebuild too), repair <= 3 x cp, peak memory < 100 MB.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
build=${BUILD:-$here/../build}
cache=$here/cache
mkdir -p "$cache"
src=$cache/mjpeg_500mb.mov
if [ ! -s "$src" ] || [ "$(stat -c %s "$src")" -lt 480000000 ]; then
  # 25 s encoded once, then looped by stream copy up to ~500 MB: fast to make,
  # and the frames are as real as the encoder makes them.
  ffmpeg -y -v error -nostdin -f lavfi -i testsrc2=size=1280x720:rate=25:duration=25 \
    -f lavfi -i sine=frequency=440:sample_rate=48000:duration=25 \
    -c:v mjpeg -q:v 2 -c:a pcm_u8 "$cache/mjpeg_25s.mov"
  part=$(stat -c %s "$cache/mjpeg_25s.mov")
  loops=$(( (500000000 + part - 1) / part - 1 ))
  ffmpeg -y -v error -nostdin -stream_loop "$loops" -i "$cache/mjpeg_25s.mov" -c copy "$src"
  rm -f "$cache/mjpeg_25s.mov"
fi
size=$(stat -c %s "$src")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp "$src" "$work/in.mov"
sync
cat "$work/in.mov" > /dev/null   # both runs start from the page cache

seconds() {   # wall time of "${@:2}" followed by sync; its stdout goes to $1
  local out=$1 t0 t1
  shift
  t0=$(date +%s.%N)
  "$@" > "$out"
  sync
  t1=$(date +%s.%N)
  echo "$t1 - $t0" | bc -l
}

best() { printf '%s\n' "$@" | sort -g | head -1; }

# Three rounds; the best of each stands, as write-back of the previous
# round's output can land in any one of them.
cps=(); reps=(); nosync=()
for round in 1 2 3; do
  cps+=("$(seconds /dev/null cp "$work/in.mov" "$work/copy.mov")")
  rm -f "$work/copy.mov"; rm -rf "$work/Repaired"; sync
  reps+=("$(seconds "$work/out.json" /usr/bin/time -v -o "$work/time.$round" "$build/bin/reelwright-batch" --quiet "$work/in.mov")")
  # Once more without the sync: the engine's own work, its output left in
  # the page cache (movie search + scan + rebuild).
  rm -rf "$work/Repaired.keep"; mv "$work/Repaired" "$work/Repaired.keep"; sync
  t0=$(date +%s.%N)
  "$build/bin/reelwright-batch" --quiet "$work/in.mov" > /dev/null
  t1=$(date +%s.%N)
  nosync+=("$(echo "$t1 - $t0" | bc -l)")
  rm -rf "$work/Repaired"; mv "$work/Repaired.keep" "$work/Repaired"; sync
done
cp_s=$(best "${cps[@]}")
rep_s=$(best "${reps[@]}")
cpu_s=$(best "${nosync[@]}")
peak_kb=$(cat "$work"/time.* | grep "Maximum resident set size" | awk '{print $NF}' | sort -n | tail -1)
out_size=$(stat -c %s "$work/Repaired/in.mov" 2>/dev/null || echo 0)
frames_in=$(ffprobe -v error -select_streams v:0 -count_packets -show_entries stream=nb_read_packets -of csv=p=0 "$work/in.mov")
frames_out=$(ffprobe -v error -select_streams v:0 -count_packets -show_entries stream=nb_read_packets -of csv=p=0 "$work/Repaired/in.mov" 2>/dev/null || echo 0)

printf 'file            %d MB, %s frames\n' $((size / 1000000)) "$frames_in"
printf 'output          %d MB, %s frames\n' $((out_size / 1000000)) "$frames_out"
printf 'cp              %.2f s\n' "$cp_s"
printf 'whole repair    %.2f s  (%.2f x cp)\n' "$rep_s" "$(echo "$rep_s / $cp_s" | bc -l)"
printf 'repair rate     %.0f MB/s (movie search + scan + rebuild)\n' "$(echo "$size / 1000000 / $rep_s" | bc -l)"
printf 'without sync    %.2f s  (%.0f MB/s)\n' "$cpu_s" "$(echo "$size / 1000000 / $cpu_s" | bc -l)"
printf 'peak memory     %d MB\n' $((peak_kb / 1024))
cat "$work/out.json"
