#!/usr/bin/env bash
# Times reelwright-batch over a folder of 20 container files (4 each of AVI,
# MKV, FLV, WMV, MTS; about 50 MB each) with --jobs 1 and --jobs 2.
#   bench/batch_jobs.sh [BUILD_DIR] [JOBS...]    (default build, jobs 1 2)
# The files are made once into bench/cache/jobs/ (one encode per container,
# copied four times). Each job count runs three times, alternating with the
# others, and the fastest run counts; each run includes a sync of what it
# wrote;
# the page cache is warmed first so that every run reads alike. Figures: wall
# time, MB/s, peak memory of the runner (its jobs are separate processes),
# the verdicts, the load average around the runs (the machine may be shared),
# and the time of each job count against --jobs 1 with the target for 2
# jobs (at most 0.6).
set -euo pipefail
cd "$(dirname "$0")/.."
. bench/lib.sh
bench_init "${1:-build}"
shift || true
if [ $# -gt 0 ]; then counts=("$@"); else counts=(1 2); fi

folder=$cache/jobs
mkdir -p "$folder"
make_kind() {   # suffix, ffmpeg output args...
  local suffix=$1; shift
  [ -s "$folder/clip4.$suffix" ] && return
  echo "making $folder/clip[1-4].$suffix (once)..."
  # 16 Mbit/s: -fs stops the 30 s encode near 50 MB.
  ffmpeg -y -v error -nostdin -f lavfi -i "testsrc2=size=640x480:rate=25:duration=30" \
    -f lavfi -i "sine=frequency=440:sample_rate=44100:duration=30" -vf noise=alls=20:allf=t \
    "$@" -fs 50000000 "$folder/.base.$suffix"
  for i in 1 2 3 4; do cp "$folder/.base.$suffix" "$folder/clip$i.$suffix"; done
  rm -f "$folder/.base.$suffix"
}
make_kind avi -c:v mpeg4 -b:v 16M -c:a libmp3lame -b:a 128k
make_kind mkv -c:v libx264 -preset ultrafast -b:v 16M -c:a aac -b:a 128k
make_kind flv -c:v flv1 -b:v 16M -c:a libmp3lame -b:a 128k
make_kind wmv -c:v wmv2 -b:v 16M -c:a wmav2 -b:a 128k
make_kind mts -f mpegts -c:v mpeg2video -b:v 16M -c:a mp2 -b:a 192k

bytes=$(du -cb "$folder"/clip* | tail -1 | cut -f1)
count=$(ls "$folder"/clip* | wc -l)
echo "input: $count files, $((bytes / 1000000)) MB in $folder; $(nproc) cores"
echo "load before: $(cut -d' ' -f1-3 /proc/loadavg)"
cat "$folder"/clip* >/dev/null

declare -A best_wall best_kib best_sync verdicts
for round in 1 2 3; do
  for n in "${counts[@]}"; do
    rm -rf "$work/out"; mkdir "$work/out"; sync
    timed run "$batch" --quiet --jobs "$n" --work-root "$work/out" "$folder"
    start=$(date +%s.%N); sync; sync_s=$(awk -v s="$start" -v e="$(date +%s.%N)" 'BEGIN { print e - s }')
    if [ -z "${best_wall[$n]:-}" ] || awk -v a="$run_wall" -v b="${best_wall[$n]}" 'BEGIN { exit !(a < b) }'; then
      best_wall[$n]=$run_wall; best_kib[$n]=$run_kib; best_sync[$n]=$sync_s
    fi
    verdicts[$n]="$(grep -c '"repaired":true' "$work/run.out") of $(grep -c '"event":"verdict"' "$work/run.out") repaired"
  done
done
rm -rf "$work/out"
echo "load after: $(cut -d' ' -f1-3 /proc/loadavg)"

first=${counts[0]}
for n in "${counts[@]}"; do
  line=$(awk -v n="$n" -v w="${best_wall[$n]}" -v y="${best_sync[$n]}" -v b="$bytes" -v k="${best_kib[$n]}" \
             -v base="${best_wall[$first]}" -v basey="${best_sync[$first]}" -v f="$first" \
    'BEGIN { printf "--jobs %-3s %6.2f s %7.1f MB/s %8d KiB  sync %5.2f s  with sync %6.2f s   x%.2f of --jobs %s (with sync x%.2f)",
             n, w, b / 1e6 / w, k, y, w + y, w / base, f, (w + y) / (base + basey) }')
  target=""
  if [ "$n" = 2 ] && [ "$first" = 1 ]; then
    awk -v w="${best_wall[$n]}" -v b="${best_wall[$first]}" 'BEGIN { exit !(w <= 0.6 * b) }' \
      && target="  target <= 0.6: met" || target="  target <= 0.6: MISSED"
  fi
  echo "$line   ${verdicts[$n]}$target"
done
