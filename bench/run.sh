#!/usr/bin/env bash
# One benchmark for the whole engine: a large file per route, repaired by the
# batch runner, against reading it (cat, warm), copying it (cp) and a stream
# copy of the healthy original by ffmpeg.
#   bench/run.sh [--size MB] [--build DIR] [ROUTE...]
# Routes: h264 hevc sowt mjpeg avi wmv flv mts mkv mpeg (all by default). The
# files are made once per size into bench/cache/run-<MB>/: a short clip is
# encoded and looped by stream copy up to the size (the MPEG file is encoded
# whole). The h264, hevc and sowt files lose their movie (a recording cut off)
# and are repaired from a sample; the others are repaired as they are.
# Per route one line: the repair's wall time, MB/s and peak memory, the same
# figures for cat and for ffmpeg's stream copy, cp's time, the ratios, the
# engine's own scan rate where it logs one, and the route's target with
# "met" or "MISSED". Each time is the best of two runs, each started after a
# sync. The repair's seconds and MB/s run to its exit (what the user waits
# for); "disk s" adds the sync behind it, to its output on disk. The copies
# (cp, ffcopy) are timed to their output on disk, and so are the ratios of
# the repair to them. Exit status 1 when a route missed its target or made
# no output.
set -euo pipefail
cd "$(dirname "$0")/.."
size_mb=200
build=build
routes=()
while [ $# -gt 0 ]; do
  case $1 in
    --size) size_mb=$2; shift 2 ;;
    --build) build=$2; shift 2 ;;
    -h|--help) sed -n '2,15p' "$0"; exit 0 ;;
    *) routes+=("$1"); shift ;;
  esac
done
[ ${#routes[@]} -gt 0 ] || routes=(h264 hevc sowt mjpeg avi wmv flv mts mkv mpeg)
. bench/lib.sh
bench_init "$build" "bench/cache/run-$size_mb"
bytes=$((size_mb * 1000000))

# encode OUT HUE ARGS...: a 20 s clip of 640x360 at 25 fps with a tone.
encode() {
  local out=$1 hue=$2; shift 2
  ffmpeg -y -v error -nostdin -f lavfi -i "testsrc2=size=640x360:rate=25" \
    -f lavfi -i "sine=frequency=440:sample_rate=48000" -t 20 -vf "hue=h=$hue" "$@" "$out"
}
# grow CLIP OUT [FORMAT ARGS]: loops the clip by stream copy up to the size.
grow() {
  local clip=$1 out=$2; shift 2
  local loops=$(( bytes / $(stat -c %s "$clip") + 1 ))
  if [ "${clip##*.}" = flv ]; then
    # The FLV reader can't seek back to loop: join copies of the clip instead.
    local list=$clip.list
    for _ in $(seq 0 "$loops"); do echo "file '$(realpath "$clip")'"; done > "$list"
    ffmpeg -y -v error -nostdin -f concat -safe 0 -i "$list" -map 0 -c copy -fs "$bytes" "$@" "$out"
    rm -f "$list"
  else
    ffmpeg -y -v error -nostdin -stream_loop "$loops" -i "$clip" -map 0 -c copy -fs "$bytes" "$@" "$out"
  fi
}

# Each route's targets, as its own benchmark states them. Keys: ffc (repair
# at most N times ffmpeg's stream copy), cp (at most N times cp), scan (the
# logged scan rate at least N MB/s), mem (peak below N MB), rate (the repair
# at least N MB/s).
declare -A targets=(
  [h264]="ffc=1 cp=1.5 scan=1000 mem=100 rate=600"
  [hevc]="scan=150 rate=600"
  [sowt]="ffc=4 scan=150 rate=600"
  [mjpeg]="cp=3 mem=100 rate=600"
  [avi]="cp=3 rate=600" [wmv]="cp=3 rate=600" [flv]="cp=3 rate=600" [mkv]="cp=3 rate=600" [mpeg]="cp=3 rate=600"
  [mts]="rate=600"
)

make_route() {   # route: sets original, damaged, sample, ext
  local r=$1 args=() fmt=()
  sample=""
  case $r in
    h264) ext=mov; args=(-c:v libx264 -preset veryfast -profile:v high -g 30 -b:v 10M -pix_fmt yuv420p -c:a aac -b:a 128k) ;;
    hevc) ext=mov; args=(-c:v libx265 -preset ultrafast -tag:v hvc1 -b:v 8M -pix_fmt yuv420p -c:a aac -b:a 128k -x265-params log-level=error) ;;
    sowt) ext=mov; args=(-c:v libx264 -preset veryfast -profile:v high -g 30 -b:v 10M -pix_fmt yuv420p -x264-params aud=1 -c:a pcm_s16le -ac 2) ;;
    # 8-bit sound: with 16-bit PCM the movie names a second codec kind and
    # the file takes the sample-driven route instead.
    mjpeg) ext=mov; args=(-c:v mjpeg -q:v 3 -c:a pcm_u8) ;;
    avi) ext=avi; args=(-c:v mpeg4 -vtag XVID -b:v 10M -c:a libmp3lame -b:a 128k) ;;
    wmv) ext=wmv; args=(-c:v wmv2 -b:v 10M -c:a wmav2 -b:a 128k) ;;
    flv) ext=flv; args=(-c:v flv1 -b:v 10M -c:a libmp3lame -b:a 128k -ar 44100) ;;
    mts) ext=mts; fmt=(-f mpegts -mpegts_m2ts_mode 1); args=(-c:v libx264 -preset veryfast -b:v 10M -pix_fmt yuv420p -c:a aac "${fmt[@]}") ;;
    mkv) ext=mkv; args=(-c:v libx264 -preset veryfast -b:v 10M -pix_fmt yuv420p -c:a aac) ;;
    mpeg) ext=mpg; fmt=(-f vob); args=(-c:v mpeg2video -b:v 10M -c:a mp2 "${fmt[@]}") ;;
    *) echo "unknown route $r" >&2; return 1 ;;
  esac
  original=$cache/$r.$ext
  if [ ! -s "$original" ]; then
    echo "making $original (once)..." >&2
    if [ "$r" = mpeg ]; then
      # Encoded whole, not looped: a stream copy writes system headers with
      # buffer bounds that no encoder writes, and the repair checks them.
      ffmpeg -y -v error -nostdin -f lavfi -i "testsrc2=size=640x360:rate=25" \
        -f lavfi -i "sine=frequency=440:sample_rate=48000" "${args[@]}" -fs "$bytes" "$cache/.$r.tmp.$ext"
    else
      encode "$cache/.$r.clip.$ext" 0 "${args[@]}"
      grow "$cache/.$r.clip.$ext" "$cache/.$r.tmp.$ext" "${fmt[@]}"
    fi
    mv "$cache/.$r.tmp.$ext" "$original"
    rm -f "$cache/.$r.clip.$ext"
  fi
  damaged=$original
  case $r in
    h264|hevc|sowt)
      sample=$cache/$r.sample.$ext
      [ -s "$sample" ] || encode "$sample" 90 "${args[@]}"
      damaged=$cache/$r.cut.$ext
      [ -s "$damaged" ] || head -c "$(moov_offset "$original")" "$original" > "$damaged" ;;
  esac
}

# logged_rate FILE: the MB/s of the engine's "Syntax scan", "Stream scan" or
# "Index scan" line.
logged_rate() {
  { grep -aoE '(Syntax|Stream|Index) scan: [^(]*\(([0-9]+) MB/s\)' "$1" || true; } | sed -E 's/.*\(([0-9]+) MB\/s\).*/\1/' | tail -1
}

printf '%-6s %6s | %-22s | %6s | %-22s | %-22s | %6s | %7s %7s %7s | %5s | %s\n' \
  route MB "repair s  MB/s  MB" "disk s" "cat s  MB/s  MB" "ffcopy s  MB/s  MB" "cp s" "rep/cat" "rep/cp" "rep/ffc" scan "target: verdict"
failed=0
for r in "${routes[@]}"; do
  make_route "$r"
  in=$work/clip.$ext
  ln -sf "$(realpath "$damaged")" "$in"
  size=$(stat -L -c %s "$in")
  cat "$in" "$original" >/dev/null   # warm the page cache for every step alike
  timed cat sh -c "cat '$in' > /dev/null"
  best_of_two cp cp "$in" "$work/copy.$ext"
  best_of_two ffc ffmpeg -v error -nostdin -y -i "$original" -map 0 -c copy "$work/ffcopy.$ext"
  ref=(); [ -n "$sample" ] && ref=(--reference "$sample")
  # Not --quiet: that would drop the engine's log line with the scan rate.
  best_of_two rep "$batch" "${ref[@]}" --work-root "$work" "$in"
  out=$work/Repaired/clip.$ext
  status=ok; [ -s "$out" ] || status="NO OUTPUT"
  scan=$(logged_rate "$work/rep.err")
  if [ -z "$scan" ] && { [ "$r" = h264 ] || [ "$r" = hevc ]; }; then
    # The older chain's scan waits for the muxer reading beside it; its own
    # rate shows in a run with the muxer after the scan.
    rm -rf "$work/Repaired"; sync
    REELWRIGHT_MUX_AFTER_SCAN=1 timed after "$batch" "${ref[@]}" --work-root "$work" "$in"
    scan=$(logged_rate "$work/after.err")
  fi
  awk -v r="$r" -v s="$size" -v w="$rep_exit" -v d="$rep_wall" -v k="$rep_kib" -v c="$cat_wall" -v ck="$cat_kib" \
      -v p="$cp_wall" -v f="$ffc_wall" -v fk="$ffc_kib" -v scan="${scan:-}" -v t="${targets[$r]:-}" -v st="$status" '
    function rate(sec) { return s / 1e6 / (sec > 0 ? sec : 0.01) }
    function ratio(a, b) { return b > 0 ? a / b : 0 }
    BEGIN {
      verdict = "met"; text = ""
      n = split(t, parts, " ")
      for (i = 1; i <= n; i++) {
        split(parts[i], kv, "="); key = kv[1]; lim = kv[2] + 0
        if (key == "ffc") { text = text sprintf(" repair<=%gx ffcopy", lim); if (ratio(d, f) > lim) verdict = "MISSED" }
        if (key == "cp")  { text = text sprintf(" repair<=%gx cp", lim);     if (ratio(d, p) > lim) verdict = "MISSED" }
        if (key == "scan"){ text = text sprintf(" scan>=%d MB/s", lim);      if (scan == "" || scan + 0 < lim) verdict = "MISSED" }
        if (key == "mem") { text = text sprintf(" peak<%d MB", lim);         if (k / 1024 >= lim) verdict = "MISSED" }
        if (key == "rate"){ text = text sprintf(" repair>=%d MB/s", lim);    if (rate(w) < lim) verdict = "MISSED" }
      }
      if (n == 0) { text = " none"; verdict = "-" }
      if (st != "ok") verdict = st
      printf "%-6s %6.0f | %8.2f %6.0f %6.1f | %6.2f | %8.2f %6.0f %6.1f | %8.2f %6.0f %6.1f | %6.2f | %7.2f %7.2f %7.2f | %5s |%s: %s\n",
             r, s / 1e6, w, rate(w), k / 1024, d, c, rate(c), ck / 1024, f, rate(f), fk / 1024, p,
             ratio(w, c), ratio(d, p), ratio(d, f), (scan == "" ? "-" : scan), text, verdict
      exit (verdict == "met" || verdict == "-") ? 0 : 1
    }' || failed=1
  rm -rf "$work/Repaired"
done
exit $failed
