#!/usr/bin/env bash
# Starts or stops a PulseAudio with a null sink in FOLDER, so playback in the tests really runs
# without a sound card; clients reach it as PULSE_SERVER=unix:FOLDER/native.
set -euo pipefail
action=$1
dir=$2
if [ "$action" = stop ]; then
  [ -f "$dir/pid" ] && kill "$(cat "$dir/pid")" 2>/dev/null || true
  rm -f "$dir/pid"
  exit 0
fi
command -v pulseaudio >/dev/null || { echo "no pulseaudio: media tests run without sound"; exit 0; }
mkdir -p "$dir"
chmod 700 "$dir"
[ -f "$dir/pid" ] && kill "$(cat "$dir/pid")" 2>/dev/null || true
rm -f "$dir/native"
XDG_RUNTIME_DIR=$dir HOME=$dir setsid pulseaudio -n --daemonize=no --exit-idle-time=-1 --use-pid-file=no \
  --disable-shm=yes -L module-null-sink -L "module-native-protocol-unix auth-anonymous=1 socket=$dir/native" \
  >"$dir/log" 2>&1 </dev/null &
echo $! >"$dir/pid"
for _ in $(seq 50); do
  [ -S "$dir/native" ] && exit 0
  sleep 0.1
done
cat "$dir/log"
exit 1
