#!/usr/bin/env bash
# Sets up, builds and runs every check: formatting, the unit tests, the built-in batteries,
# the fuzzers, then the whole suite again under AddressSanitizer and UndefinedBehaviorSanitizer.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
"$root/scripts/setup.sh"
cd "$root"

echo "== formatting"
files=$(git ls-files 'src/*.cpp' 'src/*.h' 'tests/*.cpp' 'tests/*.h' 'bench/*.cpp' 'bench/*.h' 'mtp-bridge/*.cpp' 'mtp-bridge/*.h')
clang-format --dry-run -Werror $files

echo "== layers"
"$root/scripts/check-layers.sh"

echo "== build"
"$root/scripts/build.sh" "$root/build"

export QT_QPA_PLATFORM=offscreen
export XDG_RUNTIME_DIR=${XDG_RUNTIME_DIR:-$(mktemp -d)}
echo "== unit tests"
(cd build && ORVANE_BIG_FILE_TESTS=1 ctest --output-on-failure -j2)

echo "== built-in batteries"
build/bin/Orvane --self-test
if [ -x build/bin/mtp-bridge ]; then
  phone=$(mktemp -d)
  mkdir -p "$phone/Internal storage"
  MTP_BRIDGE_SIMULATE="$phone" build/bin/Orvane --phone-parity-test
  rm -rf "$phone"
fi
if [ -x tests/fuzz/run-fuzzers.sh ]; then
  echo "== fuzzers"
  FUZZ_BUILD_DIR="$root/build/fuzz" tests/fuzz/run-fuzzers.sh 20
fi

echo "== unit tests under AddressSanitizer and UndefinedBehaviorSanitizer"
"$root/scripts/build.sh" "$root/build-asan" -DORVANE_SANITIZE=ON
export ASAN_OPTIONS=detect_leaks=0:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
(cd build-asan && ctest --output-on-failure -j2)
