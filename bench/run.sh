#!/usr/bin/env bash
# One benchmark for the whole engine: a large file per route, repaired by the
# batch runner, against reading it (cat, warm), copying it (cp) and a stream
# copy of the healthy original by ffmpeg.
#   bench/run.sh [--size MB] [--build DIR] [ROUTE...]
# Routes: h264 hevc mjpeg avi wmv flv mts mkv mpeg (all by default). The files
# are made once per size into bench/cache/run-<MB>/: a short clip is encoded
# and looped by stream copy up to the size (the MPEG file is encoded whole). h264 and hevc files lose their
# movie (a recording cut off) and are repaired from a sample; the others are
# repaired as they are. One line per route; the target column says what the
# route's own benchmark demands (scan rates: see bench/h264.sh).
set -euo pipefail
cd "$(dirname "$0")/.."
size_mb=200
build=build
routes=()
while [ $# -gt 0 ]; do
  case $1 in
    --size) size_mb=$2; shift 2 ;;
    --build) build=$2; shift 2 ;;
    -h|--help) sed -n '2,12p' "$0"; exit 0 ;;
    *) routes+=("$1"); shift ;;
  esac
done
[ ${#routes[@]} -gt 0 ] || routes=(h264 hevc mjpeg avi wmv flv mts mkv mpeg)
batch=$build/bin/reelwright-batch
[ -x "$batch" ] || { echo "build $batch first (bash scripts/setup.sh $build)" >&2; exit 1; }

cache=bench/cache/run-$size_mb
mkdir -p "$cache"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
. bench/lib.sh
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
make_route() {   # route: sets original, damaged, sample, ext
  local r=$1 args=() fmt=()
  sample=""
  case $r in
    h264) ext=mov; args=(-c:v libx264 -preset veryfast -profile:v high -g 30 -b:v 10M -pix_fmt yuv420p -c:a aac -b:a 128k) ;;
    hevc) ext=mov; args=(-c:v libx265 -preset ultrafast -tag:v hvc1 -b:v 8M -pix_fmt yuv420p -c:a aac -b:a 128k -x265-params log-level=error) ;;
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
  if [ "$r" = h264 ] || [ "$r" = hevc ]; then
    sample=$cache/$r.sample.$ext
    [ -s "$sample" ] || encode "$sample" 90 "${args[@]}"
    damaged=$cache/$r.cut.$ext
    [ -s "$damaged" ] || head -c "$(moov_offset "$original")" "$original" > "$damaged"
  fi
}

printf '%-6s %8s %9s %9s %9s %9s %9s %9s %9s  %s\n' route MB repair_s MB/s peak_MB cat_s cp_s ffcopy_s rep/ffc target
for r in "${routes[@]}"; do
  make_route "$r"
  in=$work/clip.$ext
  ln -sf "$(realpath "$damaged")" "$in"
  size=$(stat -L -c %s "$in")
  cat "$in" "$original" >/dev/null   # warm the page cache for every step alike
  timed cat sh -c "cat '$in' > /dev/null"
  timed cp cp "$in" "$work/copy.$ext"; rm -f "$work/copy.$ext"
  timed ffc ffmpeg -v error -nostdin -y -i "$original" -map 0 -c copy "$work/ffcopy.$ext"; rm -f "$work/ffcopy.$ext"
  ref=(); [ -n "$sample" ] && ref=(--reference "$sample")
  rm -rf "$work/Repaired"
  timed rep "$batch" --quiet "${ref[@]}" --work-root "$work" "$in"
  out=$work/Repaired/clip.$ext
  status=ok; [ -s "$out" ] || status="NO OUTPUT"
  case $r in
    h264) target="<= 2.5 x ffmpeg copy" ;;
    mjpeg|avi) target="<= 3 x cp" ;;
    *) target="-" ;;
  esac
  awk -v r="$r" -v s="$size" -v w="$rep_wall" -v k="$rep_kib" -v c="$cat_wall" -v p="$cp_wall" -v f="$ffc_wall" \
      -v t="$target" -v st="$status" 'BEGIN {
        ww = (w > 0 ? w : 0.01);
        printf "%-6s %8.0f %9.2f %9.0f %9.1f %9.2f %9.2f %9.2f %9.2f  %s (x cp %.2f) %s\n",
               r, s / 1e6, w, s / 1e6 / ww, k / 1024, c, p, f, (f > 0 ? w / f : 0), t, (p > 0 ? w / p : 0),
               (st == "ok" ? "" : st) }'
  rm -rf "$work/Repaired"
done
