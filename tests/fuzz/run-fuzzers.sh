#!/usr/bin/env bash
# Builds the libFuzzer targets of the phone decoders with AddressSanitizer and runs each for a
# bounded time. Usage: tests/fuzz/run-fuzzers.sh [seconds per target, default 20]
# FUZZ_BUILD_DIR chooses where binaries and corpora go (default build/fuzz).
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
top=$(cd "$here/../.." && pwd)
seconds=${1:-${FUZZ_SECONDS:-20}}
out=${FUZZ_BUILD_DIR:-$top/build/fuzz}
mkdir -p "$out"

# Only the decoders and what they use: no widgets, no platform seam.
sources=("$top/src/phone/PhoneJson.cpp" "$top/src/phone/PhoneItem.cpp" "$top/src/phone/PhoneReply.cpp"
         "$top/src/phone/PhoneLocation.cpp")
read -r -a qt_flags <<< "$(pkg-config --cflags Qt6Core)"
read -r -a qt_libs <<< "$(pkg-config --libs Qt6Core)"
flags=(-std=c++20 -g -O1 -fPIC -fno-omit-frame-pointer -fsanitize=fuzzer,address -I"$top/src" "${qt_flags[@]}")

seed() { # corpus, name, content
  printf '%s' "$3" > "$1/seed-$2"
}

status=0
for target in PhoneReplyFuzzer PhoneLocationFuzzer; do
  echo "== building $target"
  clang++ "${flags[@]}" "$here/$target.cpp" "${sources[@]}" "${qt_libs[@]}" -o "$out/$target"
  corpus="$out/$target-corpus"
  mkdir -p "$corpus"
  if [ "$target" = PhoneReplyFuzzer ]; then
    seed "$corpus" items '{"items":[{"id":4294967295,"storage":65537,"name":"Internal storage","folder":true,"size":0,"modified":1.5,"created":"20240314T090512","width":1,"height":2}]}'
    seed "$corpus" progress '{"progress":0.5}'
    seed "$corpus" error '{"error":"No thumbnail available from phone.","id":7,"x":[null]}'
  else
    seed "$corpus" address 'android://phone/Internal%20storage?location=W3siaWQiOjQyOTQ5NjcyOTUsInN0b3JhZ2UiOjY1NTM3LCJuYW1lIjoiSW50ZXJuYWwgc3RvcmFnZSIsImZvbGRlciI6dHJ1ZSwic2l6ZSI6MH1d'
    seed "$corpus" chain '0[{"id":1,"storage":65537,"name":"DCIM","folder":true,"size":0,"created":"x"}]'
  fi
  echo "== running $target for ${seconds}s"
  # pipefail makes a crash of the fuzzer, not of tail, decide the status.
  if ! (cd "$out" && "./$target" -max_total_time="$seconds" -max_len=4096 -print_final_stats=1 "$corpus" 2>&1 |
        tail -n 12); then
    echo "== $target FAILED"
    status=1
  fi
done
exit $status
