#!/usr/bin/env bash
# Sets up, builds and launches Orvane. Without a display it runs under Xvfb and writes a screenshot.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
"$root/scripts/setup.sh"
"$root/scripts/build.sh" "$root/build"
app="$root/build/bin/Orvane"
echo "To install it for this user: cmake --install $root/build --prefix ~/.local"
if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
  exec "$app" "$@"
fi
shot="$root/build/orvane-screenshot.png"
echo "No display found: running Orvane under Xvfb for a few seconds and saving a screenshot."
xvfb-run -a -s "-screen 0 1400x860x24" bash -c "
  '$app' $* & pid=\$!
  sleep 4
  import -window root '$shot'
  kill \$pid"
echo "Screenshot written to $shot"
