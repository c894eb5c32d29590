#!/usr/bin/env bash
# Installs the Debian packages the build needs, and only those that are missing,
# so that a second run on a prepared machine costs a dpkg query and nothing more.
set -euo pipefail

packages=(
    build-essential cmake ninja-build pkg-config
    libgtest-dev libgmock-dev libbenchmark-dev
    clang libclang-rt-14-dev clang-format
    qt6-base-dev qt6-svg-dev libfontconfig-dev libgl-dev
    desktop-file-utils appstream shared-mime-info libglib2.0-bin dpkg-dev file
    xvfb xauth x11-utils imagemagick openbox xdotool
    nlohmann-json3-dev time libcli11-dev
    libsodium-dev minisign
    libcpp-httplib-dev chromium curl
)
# `install-deps.sh bench` adds npm, with which the benchmarks fetch the peer's
# packer that they compare ours with, and the load generator and the web
# server that `vxpk serve` is measured against.
if [ "${1:-}" = bench ]; then
    packages+=(wrk nginx-light)
    if ! command -v npm >/dev/null; then
        packages+=(nodejs npm)
    fi
fi

missing=()
for package in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed"; then
        missing+=("$package")
    fi
done

if [ ${#missing[@]} -eq 0 ]; then
    exit 0
fi

echo "Installing missing packages: ${missing[*]}"
sudo_cmd=()
if [ "$(id -u)" -ne 0 ]; then
    sudo_cmd=(sudo)
fi
export DEBIAN_FRONTEND=noninteractive
"${sudo_cmd[@]}" apt-get update -qq
"${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
