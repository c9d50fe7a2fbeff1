#!/usr/bin/env bash
# Installs the Debian packages that the project builds and tests with. Does nothing, and needs no
# network, when they are all there.
set -euo pipefail

packages=(
    # tools
    build-essential cmake ninja-build dpkg-dev file pandoc ccache mold clang clang-format clang-tidy pkg-config git
    libclang-rt-14-dev
    # libraries
    libfmt-dev libtbb-dev libgeos-dev libcairo2-dev libhwy-dev libedit-dev libcli11-dev
    libnanoflann-dev
    fonts-dejavu-core
    # the window, and a screen for its tests
    qt6-base-dev qt6-qpa-plugins libgl1-mesa-dev xvfb
    # tests and benchmarks; the python packages and GDAL are independent readers of our files
    libgtest-dev libgmock-dev libbenchmark-dev python3-ezdxf python3-gdal python3-shapely
    locales
)

missing=()
for package in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q '^install ok installed$' ||
        missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

as_root=()
if [ "$(id -u)" -ne 0 ]; then
    as_root=(sudo)
fi
echo "Installing: ${missing[*]}"
"${as_root[@]}" apt-get update -qq
DEBIAN_FRONTEND=noninteractive "${as_root[@]}" apt-get install -y -qq --no-install-recommends \
    "${missing[@]}" >/dev/null
