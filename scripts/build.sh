#!/usr/bin/env bash
# Configures and builds into the folder given (default build/); extra arguments go to cmake.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
dir=${1:-$root/build}
shift || true
launcher=()
# Worktrees of one machine share compiled objects when ccache is there.
command -v ccache >/dev/null && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
cmake -S "$root" -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo "${launcher[@]}" "$@" > "$dir.configure.log" 2>&1 ||
  { cat "$dir.configure.log"; exit 1; }
ninja -C "$dir"
