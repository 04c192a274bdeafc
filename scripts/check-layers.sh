#!/usr/bin/env bash
# Lists every include that runs from a folder of src/ up to a folder above it, and fails on any.
# The order, bottom first; a folder may include its own headers and those of folders before it.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
layers=(platform core kit media views fileops navigation phone search properties chrome system window batteries)
declare -A rank
for i in "${!layers[@]}"; do rank[${layers[$i]}]=$i; done
bad=0
while IFS= read -r line; do
  file=${line%%:*}
  from=$(cut -d/ -f2 <<<"$file")
  to=$(sed -E 's/.*#include "([a-z-]+)\/.*/\1/' <<<"$line")
  [ -n "${rank[$from]:-}" ] || { echo "unknown layer: $file"; bad=1; continue; }
  [ "$from" = "$to" ] && continue
  if [ -z "${rank[$to]:-}" ] || [ "${rank[$to]}" -ge "${rank[$from]}" ]; then
    echo "runs back up: $line"
    bad=1
  fi
done < <(cd "$root" && grep -rn --include='*.h' --include='*.cpp' --include='*.mm' -E '^#include "[a-z-]+/' src |
         grep -v '^src/window/main\.cpp:') # the program itself sits above every layer
# The bridge shares only the phone protocol and the platform seam.
while IFS= read -r line; do
  echo "the bridge reaches into the program: $line"
  bad=1
done < <(cd "$root" && grep -rn -E '^#include "[a-z-]+/' mtp-bridge | grep -vE '"(platform|phone/PhoneProtocol)' || true)
exit $bad
