#!/usr/bin/env bash
# Times the AVI repair of a 1 GB file against reading and copying it.
#   bench/avi.sh [BUILD_DIR]     (default build; needs reelwright-batch built)
# The input (MPEG-4 video with fourcc XVID and MP3 sound, about 1 GB) is made
# once into bench/cache/. Figures: wall time and peak memory of each step.
set -euo pipefail
cd "$(dirname "$0")/.."
. bench/lib.sh
bench_init "${1:-build}"

input=$cache/avi_1g.avi
if [ ! -s "$input" ]; then
  echo "making $input (once)..."
  # 8 Mbit/s at 25 fps: about 40 KB per frame, some 25000 video and 42000
  # audio chunks per GB. -fs stops near 1 GB, below the 1 GiB of one RIFF.
  ffmpeg -y -v error -nostdin \
    -f lavfi -i "testsrc2=size=640x480:rate=25:duration=1200" \
    -f lavfi -i "sine=frequency=440:sample_rate=48000:duration=1200" \
    -c:v mpeg4 -vtag XVID -b:v 8M -minrate 8M -maxrate 8M -bufsize 2M \
    -c:a libmp3lame -b:a 128k -fs 1000000000 "$cache/.avi_1g.tmp.avi"
  mv "$cache/.avi_1g.tmp.avi" "$input"
fi

cp "$input" "$work/clip.avi"
size=$(stat -c %s "$work/clip.avi")

timed() {   # label, command...: prints wall seconds and peak KiB
  local label=$1; shift
  /usr/bin/time -f "%e %M" -o "$work/time" "$@" >/dev/null
  read -r wall rss <"$work/time"
  printf '%-22s %8.2f s %10d KiB\n' "$label" "$wall" "$rss"
  eval "${label//[^a-z]/_}=$wall"
}

echo "input: $size bytes"
cat "$work/clip.avi" >/dev/null   # warm the page cache for every step alike
timed "cat > /dev/null" sh -c "cat '$work/clip.avi' > /dev/null"
timed "cp" cp "$work/clip.avi" "$work/copy.avi"
rm -f "$work/copy.avi"
timed "repair" "$batch" --quiet --work-root "$work" "$work/clip.avi"
out=$work/Repaired/clip.avi
[ -s "$out" ] || { echo "no output" >&2; exit 1; }
echo "output: $(stat -c %s "$out") bytes"
awk -v r="$repair" -v c="$cp" 'BEGIN { printf "repair / cp = %.2f (target <= 3)\n", r / c }'
