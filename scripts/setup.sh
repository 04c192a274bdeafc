#!/usr/bin/env bash
# Installs what Orvane needs to build, run and test on Debian 12, and nothing that is already there.
set -euo pipefail
packages=(cmake ninja-build g++ clang clang-format pkg-config qt6-base-dev qt6-multimedia-dev libmtp-dev
          gstreamer1.0-plugins-base gstreamer1.0-plugins-good gstreamer1.0-libav
          ffmpeg xvfb xauth imagemagick zip unzip libgl-dev ccache plocate
          libglib2.0-dev fuse3 fusefat dosfstools adwaita-icon-theme)
packages+=(libssl-dev openssl)  # the update feed's signatures, and the test's own server and keys
packages+=(qt6-pdf-dev)
packages+=(libarchive-dev libarchive-tools p7zip-full zstd xz-utils bzip2 desktop-file-utils)
packages+=(dbus libglib2.0-bin xdg-utils desktop-file-utils appstream)
packages+=(openbox x11-utils libxcb1-dev)
packages+=(xdotool) # the end-to-end drags
packages+=(pulseaudio pulseaudio-utils gstreamer1.0-plugins-ugly gstreamer1.0-plugins-bad)
packages+=(libvips-tools ffmpegthumbnailer qt6-image-formats-plugins libavformat-dev libavutil-dev)
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  echo "Installing: ${missing[*]}"
  sudo_cmd=""
  [ "$(id -u)" -ne 0 ] && sudo_cmd="sudo"
  $sudo_cmd apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo_cmd apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
