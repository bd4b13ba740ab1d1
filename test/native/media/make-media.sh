#!/bin/sh
# Makes the media of the tests in the folder given as the argument, by FFmpeg's tool.
#
# The pictures carry their number in twelve blocks along their upper edge, the lowest bit first,
# white for 1. Two sound tracks: 440 Hz (English) and 880 Hz (French). A German subtitle.
set -eu
out=$1
rm -rf "$out"
mkdir -p "$out/hls" "$out/dash"
cd "$out"

cat > de.srt <<'SRT'
1
00:00:01,000 --> 00:00:02,000
<b>Guten</b> Tag

2
00:00:03,000 --> 00:00:05,000
Zweiter Satz
SRT

ff() { ffmpeg -nostdin -hide_banner -loglevel error -y "$@"; }

# luma(X): white where the bit of the block is set in the number of the picture, grey below.
bits="lum='if(lt(Y,H/6),if(mod(floor(N/pow(2,floor(X*12/W))),2),235,16),90+20*sin(N/5))':cb=128:cr=128"
video() { # seconds width height rate
  printf 'color=c=black:s=%sx%s:r=%s:d=%s,format=yuv420p,geq=%s' "$2" "$3" "$4" "$1" "$bits"
}
x264="-c:v libx264 -preset ultrafast -pix_fmt yuv420p -g 25 -bf 2"

ff -f lavfi -i "$(video 6 320 180 25)" -f lavfi -i sine=440:d=6:r=48000 \
  -f lavfi -i sine=880:d=6:r=48000 -i de.srt -map 0 -map 1 -map 2 -map 3 \
  $x264 -c:a aac -c:s mov_text -t 6 -movflags +faststart \
  -metadata:s:a:0 language=eng -metadata:s:a:1 language=fra -metadata:s:s:0 language=ger film.mp4
ff -i film.mp4 -map 0 -c copy -c:s srt film.mkv
ff -i film.mp4 -map 0:v -map 0:a -c copy film.ts
ff -i film.mp4 -map 0:v -an -c copy silent.mp4
ff -i film.mp4 -map 0:a:0 -c copy sound.m4a
ff -i film.mp4 -map 0:v -map 0:a:0 -t 1 -c copy short.mp4
ff -i short.mp4 -c copy short.ts
# One large group of pictures, of which not all fit into the memory for playing backwards.
ff -f lavfi -i "$(video 4 1280 720 25)" -c:v libx264 -preset ultrafast -g 1000 -t 4 onegroup.mp4
# Two variants of the same film, told apart by the size of their pictures.
ff -i film.mp4 -map 0:v -map 0:a:0 -map 0:v -map 0:a:0 -c:a copy -c:v libx264 -preset ultrafast \
  -g 25 -filter:v:1 scale=160:90 -b:v:0 900k -maxrate:v:0 900k -bufsize:v:0 900k -b:v:1 100k \
  -f hls -hls_time 2 -hls_list_size 0 -var_stream_map 'v:0,a:0 v:1,a:1' \
  -master_pl_name master.m3u8 -hls_segment_filename 'hls/v%v-%d.ts' 'hls/v%v.m3u8'
mv master.m3u8 hls/ 2>/dev/null || true
ff -i film.mp4 -map 0:v -map 0:a:0 -c copy -f dash -seg_duration 2 dash/film.mpd

head -c 200000 /dev/urandom > random.mp4
head -c "$(($(wc -c < film.mp4) / 2))" film.mp4 > truncated.mp4
: > empty.mp4
