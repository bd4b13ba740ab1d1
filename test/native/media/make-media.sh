#!/bin/sh
# make-media.sh FOLDER [MADE]: makes the media of the tests in the folder, by FFmpeg's tool, or copies
# those that another build has made in its own.
#
# The pictures carry their number in twelve blocks along their upper edge, the lowest bit first,
# white for 1. Two sound tracks: 440 Hz (English) and 880 Hz (French). A German subtitle.
set -eu
out=$1
made=${2:-}
rm -rf "$out"
if [ -n "$made" ] && [ "$made/complete" -nt "$0" ]; then
  cp -a "$made" "$out"
  exit
fi
mkdir -p "$out/hls" "$out/dash" "$out/live"
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

# lum: white where the bit of the block is set in the number of the picture, grey below.
video() { # seconds width height rate [number of the picture, from N]
  printf "color=c=black:s=%sx%s:r=%s:d=%s,format=yuv420p,geq=lum='if(lt(Y,H/6)," "$2" "$3" "$4" "$1"
  printf "if(mod(floor(%s/pow(2,floor(X*12/W))),2),235,16),90+20*sin(N/5))':cb=128:cr=128" "${5:-N}"
}
x264="-c:v libx264 -preset ultrafast -pix_fmt yuv420p -g 25 -bf 2"

ff -f lavfi -i "$(video 6 320 180 25)" -f lavfi -i sine=440:d=6:r=48000 \
  -f lavfi -i sine=880:d=6:r=48000 -i de.srt -map 0 -map 1 -map 2 -map 3 \
  $x264 -c:a aac -c:s mov_text -t 6 -movflags +faststart \
  -metadata:s:a:0 language=eng -metadata:s:a:1 language=fra -metadata:s:s:0 language=ger film.mp4
ff -i film.mp4 -map 0 -c copy -c:s srt film.mkv
ff -i film.mp4 -map 0:v -map 0:a -c copy film.ts
# A playlist that names a file of the machine.
printf '#EXTM3U\n#EXT-X-TARGETDURATION:6\n#EXTINF:6,\nfile://%s/film.ts\n#EXT-X-ENDLIST\n' "$PWD" > files.m3u8
ff -i film.mp4 -map 0:v -an -c copy silent.mp4
ff -i film.mp4 -map 0:a:0 -c copy sound.m4a
ff -i film.mp4 -map 0:v -map 0:a:0 -t 1 -c copy short.mp4
ff -i short.mp4 -c copy short.ts
# One large group of pictures, of which not all fit into the memory for playing backwards.
ff -f lavfi -i "$(video 4 1280 720 25)" -c:v libx264 -preset ultrafast -g 1000 -t 4 onegroup.mp4
# Fields of 50 pictures a second, woven into frames. By steps of one and two each bit that differs
# between the fields of a frame also differs from the frame before.
ff -f lavfi -i "$(video 3 320 180 50 'floor(N*1.5)'),tinterlace=interleave_top" -c:v mpeg2video -top 1 \
  -flags +ilme+ildct -qscale:v 2 -g 12 -bf 2 interlaced.ts

# hex BYTE...: the bytes; pgs TIME SEGMENT BYTE...: a segment of the subtitles of Blu-ray discs, for
# which there is no encoder, at a time in 90 kHz.
hex() { for byte; do printf "\\$(printf %03o "0x$byte")"; done; }
pgs() {
  time=$1 segment=$2 size=$(($# - 2))
  shift 2
  # shellcheck disable=SC2046 # words are wanted
  hex 50 47 $(printf '%08x' "$time" | sed 's/../& /g') 00 00 00 00 "$segment" \
    $(printf '%02x %02x' $((size / 256)) $((size % 256))) "$@"
}
# A white bar of 160 by 20 pixels at (80, 150) in a picture of 320 by 180, from second 1 to 2 and from
# 3 to 4.
bar() { # composition, window, palette, object, end
  pgs "$1" 16 01 40 00 b4 10 00 01 80 00 00 01 00 00 00 00 00 50 00 96
  pgs "$1" 17 01 00 00 50 00 96 00 a0 00 14
  pgs "$1" 14 00 00 01 eb 80 80 ff
  line='00 c0 a0 01 00 00'
  five="$line $line $line $line $line"
  # shellcheck disable=SC2086 # words are wanted
  pgs "$1" 15 00 00 00 c0 00 00 7c 00 a0 00 14 $five $five $five $five
  pgs "$1" 80
}
nothing() {
  pgs "$1" 16 01 40 00 b4 10 00 02 00 00 00 00
  pgs "$1" 17 01 00 00 50 00 96 00 a0 00 14
  pgs "$1" 80
}
{ nothing 0; bar 90000; nothing 180000; bar 270000; nothing 360000; } > bars.sup
ff -copyts -fix_sub_duration -i bars.sup -c:s dvdsub bars.mkv
ff -copyts -fix_sub_duration -i bars.sup -c:s dvbsub -muxdelay 0 -muxpreload 0 bars.ts
for pair in 'bars.sup pgs.mkv' 'bars.mkv dvd.mkv' 'bars.ts dvb.ts'; do
  ff -copyts -i silent.mp4 -copyts -i "${pair% *}" -map 0 -map 1 -c copy "${pair#* }"
done

# Two variants of the same film, told apart by the size of their pictures.
ff -i film.mp4 -map 0:v -map 0:a:0 -map 0:v -map 0:a:0 -c:a copy -c:v libx264 -preset ultrafast \
  -g 25 -filter:v:1 scale=160:90 -b:v:0 900k -maxrate:v:0 900k -bufsize:v:0 900k -b:v:1 100k \
  -f hls -hls_time 2 -hls_list_size 0 -var_stream_map 'v:0,a:0 v:1,a:1' \
  -master_pl_name master.m3u8 -hls_segment_filename 'hls/v%v-%d.ts' 'hls/v%v.m3u8'
mv master.m3u8 hls/ 2>/dev/null || true
ff -i film.mp4 -map 0:v -map 0:a:0 -c copy -f dash -seg_duration 2 dash/film.mpd

# Segments of a second each, for a playlist that moves on.
ff -i film.mp4 -map 0:v -map 0:a:0 -c copy -f hls -hls_time 1 -hls_list_size 0 \
  -hls_segment_filename 'live/%d.ts' live/all.m3u8

# Servers that nobody certifies but themselves, one of them under another name.
identity() { # file, name
  openssl req -x509 -newkey rsa:2048 -nodes -days 36500 -subj "/CN=$2" -addext "subjectAltName=$2" \
    -keyout key.pem -out certificate.pem 2> openssl.log
  cat certificate.pem key.pem > "$1"
}
identity server.pem IP:127.0.0.1
identity other.pem DNS:other.example

# The same in each run: chance makes a medium of some of the bytes that it gives.
head -c 200000 /dev/zero | openssl enc -aes-128-ctr -nosalt -K 1 -iv 1 > random.mp4 2> openssl.log
head -c "$(($(wc -c < film.mp4) / 2))" film.mp4 > truncated.mp4
: > empty.mp4
