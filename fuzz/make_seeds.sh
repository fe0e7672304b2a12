#!/usr/bin/env bash
# Makes small seed clips for each route with ffmpeg's synthetic sources.
#   make_seeds.sh OUT_DIR
set -euo pipefail
out=$1
mkdir -p "$out"/{mov,avi,wmv,flv,mts,mkv,mpg}
v=(-f lavfi -i "testsrc2=size=64x48:rate=25:duration=1")
a=(-f lavfi -i "sine=frequency=440:sample_rate=44100:duration=1")
ff() { ffmpeg -y -v error -nostdin "$@"; }
ff "${v[@]}" "${a[@]}" -c:v libx264 -preset ultrafast -c:a aac -b:a 32k "$out/mov/h264_aac.mov"
ff "${v[@]}" "${a[@]}" -c:v libx264 -preset ultrafast -c:a aac -b:a 32k -movflags faststart "$out/mov/faststart.mp4"
ff "${v[@]}" "${a[@]}" -c:v mjpeg -c:a pcm_s16le "$out/mov/mjpeg.mov"
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
touch "$out/.done"
