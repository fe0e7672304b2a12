#!/usr/bin/env bash
# Repairs one file of about 6 GB per route: the speed and the peak memory
# on files past 4 GiB, and whether every packet comes through.
#   bench/huge.sh [--size MB] [--build DIR] [--keep] [ROUTE...]
# Routes: avi wmv flv mts mkv mpeg h264 (avi and mkv by default). Each input
# is a 20 s clip looped by stream copy up to the size (6000 MB by default);
# the h264 one (H.264 and AAC in a MOV) then loses its movie, as a recording
# cut off, and is repaired with a 20 s sample of the same settings. Made
# into bench/cache/huge-<MB>/ and removed at the end unless --keep: files of
# this size fill a disk quickly (df -h first; a route needs twice its size).
# Per route one line: the input's size; the repair's wall time, MB/s and
# peak memory (/usr/bin/time); cp's time and the ratio (each the best of two
# runs that include a sync); the output's size; the packets per stream of
# input and output (ffprobe) and "all" when they agree, else how many the
# output has fewer (the last packet of a looped input is often cut by the
# size limit, and a repair drops a packet cut short); for AVI the RIFF parts
# of the output. The page cache is warmed before each step alike, and the
# machine's load is printed first.
set -euo pipefail
cd "$(dirname "$0")/.."
size_mb=6000
build=build
keep=0
routes=()
while [ $# -gt 0 ]; do
  case $1 in
    --size) size_mb=$2; shift 2 ;;
    --build) build=$2; shift 2 ;;
    --keep) keep=1; shift ;;
    -h|--help) sed -n '2,18p' "$0"; exit 0 ;;
    *) routes+=("$1"); shift ;;
  esac
done
[ ${#routes[@]} -gt 0 ] || routes=(avi mkv)
. bench/lib.sh
bench_init "$build" "bench/cache/huge-$size_mb"
bytes=$((size_mb * 1000000))
[ "$keep" = 1 ] || trap 'rm -rf "$work"; rm -rf "$cache"' EXIT

make_input() {   # route: sets input, original (what the packets are counted in) and ref
  local r=$1 ext args=() fmt=()
  ref=()
  case $r in
    h264) ext=mov; args=(-c:v libx264 -preset veryfast -profile:v high -g 30 -b:v 10M -pix_fmt yuv420p -c:a aac -b:a 128k) ;;
    avi) ext=avi; args=(-c:v mpeg4 -vtag XVID -b:v 10M -c:a libmp3lame -b:a 128k) ;;
    wmv) ext=wmv; args=(-c:v wmv2 -b:v 10M -c:a wmav2 -b:a 128k) ;;
    flv) ext=flv; args=(-c:v flv1 -b:v 10M -c:a libmp3lame -b:a 128k -ar 44100) ;;
    # As cameras write it: H.264 on PID 0x1011, AC-3 on 0x1100.
    mts) ext=mts; fmt=(-f mpegts -mpegts_m2ts_mode 1); args=(-c:v libx264 -preset veryfast -b:v 10M -pix_fmt yuv420p -c:a ac3
                                                             -streamid 0:0x1011 -streamid 1:0x1100 "${fmt[@]}") ;;
    mkv) ext=mkv; args=(-c:v libx264 -preset veryfast -b:v 10M -pix_fmt yuv420p -c:a aac) ;;
    mpeg) ext=mpg; fmt=(-f vob); args=(-c:v mpeg2video -b:v 10M -c:a mp2 "${fmt[@]}") ;;
    *) echo "unknown route $r" >&2; return 1 ;;
  esac
  input=$cache/$r.$ext
  original=$input
  if [ "$r" = h264 ]; then
    original=$cache/$r.whole.$ext
    ref=(--reference "$cache/$r.sample.$ext")
    [ -s "$cache/$r.sample.$ext" ] || ffmpeg -y -v error -nostdin -f lavfi -i "testsrc2=size=640x360:rate=25" \
      -f lavfi -i "sine=frequency=440:sample_rate=48000" -t 20 -vf hue=h=90 "${args[@]}" "$cache/$r.sample.$ext"
    [ -s "$input" ] && return 0
    make_looped "$r" "$ext" "$original" "${args[@]}"
    cut_movie "$original" "$input"
    return 0
  fi
  [ -s "$input" ] || make_looped "$r" "$ext" "$input" "${args[@]}"
}

make_looped() {   # route ext out encoder-args...: the clip looped up to the size
  local r=$1 ext=$2 out=$3 fmt=()
  shift 3
  case $r in mts) fmt=(-f mpegts -mpegts_m2ts_mode 1) ;; mpeg) fmt=(-f vob) ;; esac
  echo "making $out (once)..." >&2
  local clip=$cache/.$r.clip.$ext
  ffmpeg -y -v error -nostdin -f lavfi -i "testsrc2=size=640x360:rate=25" \
    -f lavfi -i "sine=frequency=440:sample_rate=48000" -t 20 "$@" "$clip"
  local loops=$(( bytes / $(stat -c %s "$clip") + 1 ))
  if [ "$ext" = mpg ]; then
    # Whole copies of the encoded clip, end to end: a program stream copied
    # by ffmpeg gets system headers that no encoder writes.
    : > "$cache/.$r.tmp.$ext"
    for _ in $(seq 2 "$loops"); do cat "$clip" >> "$cache/.$r.tmp.$ext"; done
  elif [ "$ext" = flv ]; then
    # Joined copies rather than a loop: the FLV reader can't seek back.
    for _ in $(seq 0 "$loops"); do echo "file '$(realpath "$clip")'"; done > "$clip.list"
    ffmpeg -y -v error -nostdin -f concat -safe 0 -i "$clip.list" -map 0 -c copy -fs "$bytes" "${fmt[@]}" "$cache/.$r.tmp.$ext"
  else
    ffmpeg -y -v error -nostdin -stream_loop "$loops" -i "$clip" -map 0 -c copy -fs "$bytes" "${fmt[@]}" "$cache/.$r.tmp.$ext"
  fi
  mv "$cache/.$r.tmp.$ext" "$out"
  rm -f "$clip" "$clip.list"
}

# packets FILE: the packets per stream, in the order of the streams, as
# "v/a" (ffprobe reads the whole file; a stream listed under a program too
# counts once).
packets() {
  ffprobe -v quiet -count_packets -show_entries stream=index,nb_read_packets -of csv=p=0 "$1" \
    | cut -d, -f1,2 | sort -un | cut -d, -f2 | paste -sd/
}

# same_packets IN OUT: "all" when both hold the same counts (in any order of
# the streams), else how many packets the output has fewer (or more).
same_packets() {
  local a b
  a=$(tr / '\n' <<<"$1" | sort -n | paste -sd/)
  b=$(tr / '\n' <<<"$2" | sort -n | paste -sd/)
  if [ "$a" = "$b" ]; then echo all; return; fi
  awk -v a="$1" -v b="$2" 'BEGIN { n = split(a, x, "/"); m = split(b, y, "/"); s = 0
    for (i = 1; i <= n; i++) s += x[i]; for (i = 1; i <= m; i++) s -= y[i]; printf "%+d", -s }'
}

# riff_parts FILE: the top-level RIFF lists of an AVI file.
riff_parts() {
  python3 - "$1" <<'PY'
import os, struct, sys
f = open(sys.argv[1], 'rb'); end = os.path.getsize(sys.argv[1]); pos = parts = 0
while pos + 8 <= end:
    f.seek(pos); tag, size = struct.unpack('<4sI', f.read(8))
    if tag != b'RIFF': break
    parts += 1; pos += 8 + size + (size & 1)
print(parts if pos == end else '%d (+%d bytes)' % (parts, end - pos))
PY
}

echo "load: $(cut -d' ' -f1-3 /proc/loadavg), $(nproc) cores; free: $(df -h --output=avail "$cache" | tail -1 | tr -d ' ')"
printf '%-5s %6s | %-22s | %6s %6s | %6s | %-13s %-13s %s\n' \
  route MB "repair s  MB/s  MB" "cp s" rep/cp "out MB" "in packets" "out packets" "parts"
for r in "${routes[@]}"; do
  make_input "$r"
  size=$(stat -c %s "$input")
  cat "$input" >/dev/null
  best_of_two cp cp "$input" "$work/copy.bin"
  rm -f "$work/copy.bin"
  cat "$input" >/dev/null
  best_of_two rep "$batch" "${ref[@]}" --quiet --work-root "$work" "$input"
  out=$work/Repaired/$(basename "$input")
  if [ ! -s "$out" ]; then
    printf '%-5s %6.0f | NO OUTPUT\n' "$r" "$((size / 1000000))"
    continue
  fi
  inp=$(packets "$original"); outp=$(packets "$out")
  verdict=" $(same_packets "$inp" "$outp")"
  parts="-"; [ "$r" = avi ] && parts=$(riff_parts "$out")
  awk -v r="$r" -v s="$size" -v w="$rep_wall" -v k="$rep_kib" -v p="$cp_wall" -v o="$(stat -c %s "$out")" \
      -v ip="$inp" -v op="$outp$verdict" -v parts="$parts" 'BEGIN {
    printf "%-5s %6.0f | %8.2f %6.0f %6.1f | %6.2f %6.2f | %6.0f | %-13s %-13s %s\n",
           r, s / 1e6, w, s / 1e6 / (w > 0 ? w : 0.01), k / 1024, p, (p > 0 ? w / p : 0), o / 1e6, ip, op, parts }'
  rm -rf "$work/Repaired"
  [ "$keep" = 1 ] || rm -f "$input" "$original"
done
