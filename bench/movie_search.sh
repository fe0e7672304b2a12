#!/usr/bin/env bash
# Times the search for the movie of QuickTime-family files through the batch runner.
#   bench/movie_search.sh [BUILD_DIR]     (default build; needs reelwright-batch built)
# Inputs, made once into bench/cache/ (sparse, so they take little disk):
#   nomovie_4g.mov      4 GiB, an ftyp and then nothing: every window is searched
#   movie_end_1g.mov    1 GiB of mdat with a real small moov behind it (the walk finds it)
#   movie_end_1g_broken.mov   the same with the mdat size cleared (the first window finds it)
#   movie_start_scan_256m.mov a movie at the start whose reading runs on through 256 MiB
# The moov comes from a 1 s clip with HEVC video and sowt sound: that pair of
# flags chooses no recovery pass, so a run is the search, the movie reader and
# an empty rebuild. Figures: best and worst wall time of five runs, and peak memory.
# Targets: 4 GiB without a movie under 1 s; movie at the end of 1 GiB under 0.05 s.
set -euo pipefail
cd "$(dirname "$0")/.."
. bench/lib.sh
bench_init "${1:-build}"

be32_at() {   # file, offset: the big-endian 32-bit word there
  od -An -tu4 --endian=big -j "$2" -N4 "$1" | tr -d ' '
}
code_at() {   # file, offset: the four bytes there as text
  dd if="$1" bs=1 skip="$2" count=4 status=none
}
put_be32() {  # value: four raw bytes on stdout
  printf "$(printf '\\x%02x\\x%02x\\x%02x\\x%02x' $(($1 >> 24 & 255)) $(($1 >> 16 & 255)) $(($1 >> 8 & 255)) $(($1 & 255)))"
}

clip=$cache/movie_clip.mov
if [ ! -s "$clip" ]; then
  ffmpeg -y -v error -nostdin \
    -f lavfi -i "testsrc2=size=160x120:rate=25:duration=1" \
    -f lavfi -i "sine=frequency=440:sample_rate=48000:duration=1" \
    -c:v libx265 -preset ultrafast -x265-params log-level=error -tag:v hvc1 -pix_fmt yuv420p \
    -c:a pcm_s16le "$cache/.movie_clip.tmp.mov"
  mv "$cache/.movie_clip.tmp.mov" "$clip"
fi

# The clip's ftyp and moov, found by a walk over its top-level atoms.
clip_size=$(stat -c %s "$clip")
off=0; ftyp_size=0; moov_off=-1; moov_size=0
while [ "$off" -lt "$clip_size" ]; do
  size=$(be32_at "$clip" "$off")
  [ "$size" -ge 8 ] || break
  case $(code_at "$clip" $((off + 4))) in
    ftyp) ftyp_size=$size ;;
    moov) moov_off=$off; moov_size=$size ;;
  esac
  off=$((off + size))
done
[ "$ftyp_size" -gt 0 ] && [ "$moov_off" -ge 0 ] || { echo "no ftyp or moov in $clip" >&2; exit 1; }

make_movie_file() {   # path, mdat size word to write
  local path=$1 word=$2 total=$((1 << 30))
  [ -s "$path" ] && return
  local mdat=$((total - ftyp_size - moov_size))
  {
    head -c "$ftyp_size" "$clip"
    put_be32 "$word"
    printf 'mdat'
  } >"$path.tmp"
  truncate -s $((ftyp_size + mdat)) "$path.tmp"
  tail -c +$((moov_off + 1)) "$clip" | head -c "$moov_size" >>"$path.tmp"
  mv "$path.tmp" "$path"
}
make_movie_file "$cache/movie_end_1g.mov" $(((1 << 30) - ftyp_size - moov_size))
make_movie_file "$cache/movie_end_1g_broken.mov" 0

# Movie at the start with the sound track first, followed by 256 MiB of
# random bytes standing in for media data: nothing ends the reader's scan
# early, so it runs over all of them.
full=$cache/movie_start_scan_256m.mov
if [ ! -s "$full" ]; then
  ffmpeg -y -v error -nostdin \
    -f lavfi -i "testsrc2=size=160x120:rate=25:duration=1" \
    -f lavfi -i "sine=frequency=440:sample_rate=48000:duration=1" \
    -map 1:a -map 0:v -c:v libx265 -preset ultrafast -x265-params log-level=error -tag:v hvc1 \
    -pix_fmt yuv420p -c:a pcm_s16le -movflags faststart "$cache/.movie_start.tmp.mov"
  head -c $((256 << 20)) /dev/urandom >>"$cache/.movie_start.tmp.mov"
  mv "$cache/.movie_start.tmp.mov" "$full"
fi

nomovie=$cache/nomovie_4g.mov
if [ ! -s "$nomovie" ]; then
  printf '\0\0\0\x14ftypqt  \0\0\x02\0qt  ' >"$nomovie.tmp"
  truncate -s $((4 << 30)) "$nomovie.tmp"
  mv "$nomovie.tmp" "$nomovie"
fi

# The verdict is negative for every input: HEVC with sowt picks no pass.
timed() {   # label, input: five runs; best and worst wall seconds, peak KiB, verdict
  local label=$1 input=$2 best= worst= rss=0
  for _ in 1 2 3 4 5; do
    rm -rf "$work/Repaired"
    /usr/bin/time -f "%e %M" -o "$work/time" "$batch" --quiet --work-root "$work" "$input" >"$work/out"
    read -r wall kib <"$work/time"
    best=$(awk -v a="${best:-$wall}" -v b="$wall" 'BEGIN { print (b < a ? b : a) }')
    worst=$(awk -v a="${worst:-$wall}" -v b="$wall" 'BEGIN { print (b > a ? b : a) }')
    [ "$kib" -gt "$rss" ] && rss=$kib
  done
  local verdict
  verdict=$(grep -o '"repaired":[a-z]*' "$work/out" | head -1 || true)
  printf '%-36s best %6.2f s  worst %6.2f s  %8d KiB  %s\n' "$label" "$best" "$worst" "$rss" "${verdict:-no verdict}"
  eval "${3}=$best"
}

echo "inputs: $(stat -c '%n %s bytes' "$nomovie" "$cache/movie_end_1g.mov" | paste -sd ';' | sed 's/;/; /')"
timed "small clip (start-up and rebuild)" "$clip" t_clip
timed "4 GiB, no movie" "$nomovie" t_none
timed "1 GiB, movie at the end (walk)" "$cache/movie_end_1g.mov" t_walk
timed "1 GiB, movie at the end (window)" "$cache/movie_end_1g_broken.mov" t_window
timed "movie at the start, 256 MiB scanned" "$full" t_full
awk -v n="$t_none" -v w="$t_walk" -v b="$t_window" 'BEGIN {
  printf "4 GiB without a movie: %.2f s (target < 1 s) %s\n", n, (n < 1 ? "met" : "NOT MET")
  printf "movie at the end of 1 GiB: %.2f s (target < 0.05 s) %s\n", w, (w < 0.05 ? "met" : "NOT MET")
  printf "the same behind a cleared mdat size: %.2f s (the window sends 50000 progress values)\n", b
}'
