# Shared pieces of the benchmark scripts (sourced, not run).

# bench_init BUILD_DIR [CACHE_DIR]: sets batch (the build's batch runner, or
# a plain word and exit when it isn't built), cache (made, default
# bench/cache) and work (a scratch folder removed at exit).
bench_init() {
  batch=$1/bin/reelwright-batch
  [ -x "$batch" ] || { echo "build $batch first (bash scripts/setup.sh $1)" >&2; exit 1; }
  cache=${2:-bench/cache}
  mkdir -p "$cache"
  work=$(mktemp -d)
  trap 'rm -rf "$work"' EXIT
}

# timed OUTVAR COMMAND...: runs the command with /usr/bin/time; sets
# OUTVAR_wall (seconds) and OUTVAR_kib (peak resident KiB). Output goes to
# $work/OUTVAR.out and $work/OUTVAR.err.
timed() {
  local var=$1; shift
  /usr/bin/time -f "%e %M" -o "$work/$var.time" "$@" >"$work/$var.out" 2>"$work/$var.err" || {
    echo "failed: $*" >&2; tail -5 "$work/$var.err" >&2; return 1; }
  local wall rss
  read -r wall rss <"$work/$var.time"
  printf -v "${var}_wall" '%s' "$wall"
  printf -v "${var}_kib" '%s' "$rss"
}

# moov_offset FILE: position of the top-level moov atom (or of the first
# atom of size 0), as a camera's recording cut off before it stands.
moov_offset() {
  python3 - "$1" <<'PY'
import struct, sys
f = open(sys.argv[1], 'rb'); pos = 0
while True:
    f.seek(pos); h = f.read(16)
    if len(h) < 8: print(pos); break
    size, code = struct.unpack('>I4s', h[:8])
    if size == 1: size = struct.unpack('>Q', h[8:16])[0]
    if code == b'moov' or size == 0: print(pos); break
    pos += size
PY
}

# report LABEL SECONDS KIB: one figure line.
report() { printf '%-22s %8.2f s %10d KiB\n' "$1" "$2" "$3"; }

# make_camera_files ENCODE ORIGINAL SAMPLE BYTES SAMPLE_SECONDS: with the
# caller's function ENCODE OUT SECONDS HUE, makes ORIGINAL once from a 40 s
# clip looped by stream copy up to BYTES, and SAMPLE once: a recording with
# the same settings and another picture.
make_camera_files() {
  local encode=$1 original=$2 sample=$3 bytes=$4 seconds=$5
  local tmp; tmp=$(dirname "$original")/.$(basename "$original")
  if [ ! -s "$original" ]; then
    echo "making $original (once)..."
    "$encode" "$tmp.clip.mov" 40 0
    ffmpeg -y -v error -nostdin -stream_loop 30 -i "$tmp.clip.mov" -c copy -fs "$bytes" "$tmp.tmp.mov"
    mv "$tmp.tmp.mov" "$original"
    rm -f "$tmp.clip.mov"
  fi
  if [ ! -s "$sample" ]; then
    "$encode" "$tmp.sample.mov" "$seconds" 90
    mv "$tmp.sample.mov" "$sample"
  fi
}

# cut_movie ORIGINAL OUT: everything ahead of the movie, as a recording cut
# off before the movie was written.
cut_movie() {
  head -c "$(moov_offset "$1")" "$1" > "$2"
}

# best_of_two VAR COMMAND...: runs the command twice and keeps the faster run's
# figures: VAR_wall (to its output on disk), VAR_exit (to the command's exit)
# and VAR_kib. Each run starts after a sync, so no run pays for the
# writeback of the one before it; the sync behind it is timed apart and
# added to VAR_wall: every writing command (cp, the stream copy, the repair)
# pays for getting its own output to disk there. Without it, cp is a copy
# within memory.
best_of_two() {
  local var=$1; shift
  local best=999999 kib=0 exit_s=0 w wv=${var}_wall kv=${var}_kib
  for _ in 1 2; do
    rm -rf "$work/Repaired" "$work"/copy.* "$work"/ffcopy.*
    sync
    timed "$var" "$@"
    timed flush sync
    w=$(awk -v a="${!wv}" -v b="$flush_wall" 'BEGIN { print a + b }')
    if awk -v a="$w" -v b="$best" 'BEGIN { exit !(a < b) }'; then
      best=$w; kib=${!kv}; exit_s=${!wv}
    fi
  done
  printf -v "${var}_wall" '%s' "$best"
  printf -v "${var}_exit" '%s' "$exit_s"
  printf -v "${var}_kib" '%s' "$kib"
}

# copy_and_repair ORIGINAL SAMPLE CLIP BATCH: times ffmpeg's stream copy of
# ORIGINAL and the repair of CLIP with SAMPLE (best_of_two each). Sets
# copy_best, repair_best, copy_kib, repair_kib and leaves the last repair's
# output in $work/Repaired.
copy_and_repair() {
  local original=$1 sample=$2 clip=$3 batch=$4
  best_of_two copy ffmpeg -v error -nostdin -y -i "$original" -c copy "$work/copy.mov"
  best_of_two repair "$batch" --reference "$sample" --work-root "$work" "$clip"
  copy_best=$copy_wall; repair_best=$repair_wall
  report "ffmpeg -c copy" "$copy_best" "$copy_kib"
  report "repair" "$repair_best" "$repair_kib"
}

# scan_alone SAMPLE CLIP BATCH: the repair once more with the muxer run only
# after the scan, so that the scan's own rate shows (during a normal repair
# the scan waits for the muxer reading alongside). Sets scan_line (the
# engine's "Stream scan" line) and after_wall, after_kib.
scan_alone() {
  local sample=$1 clip=$2 batch=$3
  rm -rf "$work/Repaired"
  sync
  REELWRIGHT_MUX_AFTER_SCAN=1 timed after "$batch" --reference "$sample" --work-root "$work" "$clip"
  scan_line=$(grep -oE '(Syntax|Stream) scan: .*' "$work/after.err" || true)
  report "repair, mux after scan" "$after_wall" "$after_kib"
}
