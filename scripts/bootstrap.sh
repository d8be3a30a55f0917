#!/usr/bin/env bash
# Installs, from Debian's packages, everything Tilmora needs to build, test and run.
# Only missing packages are installed; running it again changes nothing.
set -euo pipefail

packages=(
  # build
  build-essential cmake ninja-build pkg-config
  # Qt 6 (Core for the logic layers; Widgets and friends for the application, Svg for its icon)
  qt6-base-dev qt6-base-dev-tools qt6-svg-dev
  # tests and benchmarks
  googletest libgtest-dev libgmock-dev libbenchmark-dev
  # formatting, and the fuzz targets (clang with libFuzzer and its sanitizers)
  clang-format clang libclang-rt-14-dev
  # the X11 backend: xcb and its extensions
  libxcb1-dev libxcb-ewmh-dev libxcb-icccm4-dev libxcb-randr0-dev libxcb-xinerama0-dev
  libxcb-res0-dev libxcb-xtest0-dev libxcb-xkb-dev libxcb-xinput-dev libxcb-keysyms1-dev
  libxcb-sync-dev libxcb-shm0-dev
  # X11 tests: servers, window managers, clients and command-line tools
  xvfb openbox icewm fluxbox xfwm4 xfconf dbus-daemon xterm x11-xserver-utils x11-utils x11-xkb-utils xdotool wmctrl
  # the big desktops' window managers (KDE, GNOME, Cinnamon, MATE, GNOME Flashback) with the
  # settings schemas muffin and marco need, on Xorg's dummy driver with two outputs
  # (together about 460 MB installed)
  kwin-x11 libkf5globalaccel-bin mutter muffin cinnamon-settings-daemon marco mate-settings-daemon-common metacity
  xserver-xorg-core xserver-xorg-video-dummy
  # `make run` without a display: a panel and a tray for the demo session, its screenshots, and
  # the accessibility and tray (D-Bus) clients that drive the application in the demo and the
  # end-to-end tests
  lemonbar trayer imagemagick python3-pyatspi at-spi2-core python3-dbus python3-gi
  # a compositing manager, for the overlays' translucent path in the end-to-end tests
  xcompmgr
)

missing=()
for package in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$package")
  fi
done

if [ "${#missing[@]}" -eq 0 ]; then
  echo "bootstrap: every package is installed"
  exit 0
fi

if [ "$(id -u)" -eq 0 ]; then
  as_root=()
elif command -v sudo >/dev/null 2>&1; then
  as_root=(sudo)
else
  echo "bootstrap: these packages are missing and neither root nor sudo is available: ${missing[*]}" >&2
  exit 1
fi

echo "bootstrap: installing ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
"${as_root[@]}" apt-get update -q
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
  apt-get install -y -q --no-install-recommends "${missing[@]}"
