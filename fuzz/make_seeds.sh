#!/usr/bin/env bash
# Makes small seed clips for each route with ffmpeg's synthetic sources.
# A quarter of a second keeps them small, since a run costs what its input is long.
#   make_seeds.sh OUT_DIR
set -euo pipefail
out=$1
mkdir -p "$out"/{mov,avi,wmv,flv,mts,mkv,mpg,sowt,twos,lpcm,hevc,hevc-lpcm,index,aac}
v=(-f lavfi -i "testsrc2=size=64x48:rate=25:duration=0.25")
a=(-f lavfi -i "sine=frequency=440:sample_rate=44100:duration=0.25")
# Uncompressed sound at a low rate: at 44.1 kHz it would make up most of a seed.
pcm=(-f lavfi -i "sine=frequency=440:sample_rate=8000:duration=0.25")
ff() { ffmpeg -y -v error -nostdin "$@"; }
ff "${v[@]}" "${a[@]}" -c:v libx264 -preset ultrafast -c:a aac -b:a 32k "$out/mov/h264_aac.mov"
ff "${v[@]}" "${a[@]}" -c:v libx264 -preset ultrafast -c:a aac -b:a 32k -movflags faststart "$out/mov/faststart.mp4"
ff "${v[@]}" "${pcm[@]}" -c:v mjpeg -q:v 31 -c:a pcm_s16le "$out/mov/mjpeg.mov"
ff "${v[@]}" "${a[@]}" -c:v mpeg4 -c:a aac -b:a 32k "$out/mov/mpeg4.3gp" 2>/dev/null || true
ff "${v[@]}" "${a[@]}" -c:v mpeg4 -vtag XVID -c:a libmp3lame -b:a 32k "$out/avi/xvid_mp3.avi"
ff "${v[@]}" -c:v mpeg4 "$out/avi/video_only.avi"
ff "${v[@]}" "${a[@]}" -c:v wmv2 -c:a wmav2 -b:a 32k "$out/wmv/wmv2.wmv"
ff "${v[@]}" "${a[@]}" -c:v flv1 -c:a libmp3lame -b:a 32k "$out/flv/sorenson.flv"
ff "${v[@]}" "${a[@]}" -c:v libx264 -preset ultrafast -c:a aac -b:a 32k "$out/flv/h264.flv"
ff "${v[@]}" "${a[@]}" -c:v libx264 -preset ultrafast -c:a ac3 -b:a 64k -f mpegts -mpegts_m2ts_mode 1 "$out/mts/bdav.mts"
ff "${v[@]}" "${a[@]}" -c:v libx264 -preset ultrafast -c:a aac -b:a 32k "$out/mkv/h264.mkv"
ff "${v[@]}" "${a[@]}" -c:v libvpx -c:a libvorbis "$out/mkv/vp8.webm"
ff "${v[@]}" "${a[@]}" -c:v mpeg2video -c:a mp2 -f vob "$out/mpg/ps.mpg"
ff "${v[@]}" -c:v mpeg1video -f mpeg1video "$out/mpg/es.mpg"
# The damaged files of the scanner routes (their sample is fixed).
h265=(-c:v libx265 -preset ultrafast -x265-params log-level=error:info=0 -tag:v hvc1)
ff "${v[@]}" "${pcm[@]}" -c:v libx264 -preset ultrafast -c:a pcm_s16le "$out/sowt/sowt.mov"
ff "${v[@]}" "${pcm[@]}" -c:v libx264 -preset ultrafast -c:a pcm_s16be "$out/twos/twos.mov"
ff "${v[@]}" "${pcm[@]}" -c:v libx264 -preset ultrafast -c:a pcm_s24le "$out/lpcm/lpcm.mov"
ff "${v[@]}" "${a[@]}" "${h265[@]}" -c:a aac -b:a 32k "$out/hevc/hevc_aac.mov"
ff "${v[@]}" "${pcm[@]}" "${h265[@]}" -c:a pcm_s24le "$out/hevc-lpcm/hevc_lpcm.mov"
# Index scanner inputs: a selector byte and a pattern ahead of media data.
for f in sowt/sowt.mov twos/twos.mov hevc-lpcm/hevc_lpcm.mov; do
  name=$(basename "$f" .mov)
  for sel in 00 01 02; do
    { printf "\x$sel\x65\x88\x84"; cat "$out/$f"; } > "$out/index/${name}_$sel"
  done
done
# Raw AAC frames behind a byte that picks the configuration (see fuzz_aac_syntax.cpp).
ff -f lavfi -i "anoisesrc=sample_rate=48000:duration=0.3" -map 0:a -ac 2 -c:a aac -f data "$out/aac/s48.raw"
ff -f lavfi -i "sine=sample_rate=16000:duration=0.5" -map 0:a -c:a aac -f data "$out/aac/m16.raw"
{ printf '\x01'; head -c 4000 "$out/aac/s48.raw"; } > "$out/aac/stereo"
{ printf '\x00'; head -c 4000 "$out/aac/m16.raw"; } > "$out/aac/mono"
rm "$out"/aac/*.raw
cp "$(dirname "$0")"/aac-regressions/* "$out/aac/"   # inputs that once found a disagreement
touch "$out/.done"
