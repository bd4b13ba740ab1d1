#!/bin/sh
# Makes the transport streams of the tests in the folder given as the argument, by FFmpeg's tool.
set -eu
out=$1
rm -rf "$out"
mkdir -p "$out"
cd "$out"

ff() { ffmpeg -nostdin -hide_banner -loglevel error -y "$@"; }

# Two services of 4 s: H.264 and AAC at 256 and 257, MPEG-2 video and layer II at 512 and 513, each
# with a key picture every half second.
ff -f lavfi -i testsrc2=s=320x180:r=25:d=4 -f lavfi -i sine=440:d=4:r=48000 \
  -f lavfi -i sine=880:d=4:r=48000 -map 0 -map 1 -map 0 -map 2 -g 12 \
  -c:v:0 libx264 -preset:v:0 ultrafast -c:v:1 mpeg2video -b:v:1 600k -c:a:0 aac -c:a:1 mp2 \
  -metadata:s:a:0 language=por -metadata:s:a:1 language=fra \
  -streamid 0:256 -streamid 1:257 -streamid 2:512 -streamid 3:513 \
  -program program_num=1:title=Televisão:st=0:st=1 -program program_num=2:title=Deux:st=2:st=3 \
  -mpegts_transport_stream_id 77 -muxrate 3000000 mux.ts
# Another transport stream, without stuffing.
ff -f lavfi -i testsrc2=s=160x90:r=25:d=2 -c:v mpeg2video -b:v 200k -g 12 -streamid 0:300 \
  -mpegts_transport_stream_id 78 other.ts
# The first one with a time stamp before each packet.
ff -i mux.ts -map 0:v:0 -c copy -mpegts_m2ts_mode 1 -t 1 stamped.m2ts

head -c 2000000 /dev/urandom | tr G H > garbage.ts
: > empty.ts
