#!/usr/bin/env bash
# Installs the Debian 12 packages the project needs, only those that are missing.
set -euo pipefail

packages=(
    cmake ninja-build g++ pkg-config
    qtbase5-dev qtdeclarative5-dev qttools5-dev qttools5-dev-tools qtquickcontrols2-5-dev
    libqt5sql5-sqlite qml-module-qtquick2 qml-module-qtquick-controls2 qml-module-qtquick-window2
    qml-module-qtquick-layouts qml-module-qttest
    qml-module-qtquick-virtualkeyboard qtvirtualkeyboard-plugin qml-module-qt-labs-folderlistmodel
    libkf5archive-dev
    samba smbclient libsmbclient-dev libfuse3-dev fuse3
    tzdata rsync zip
    ansible-core
    clang libclang-rt-14-dev
    mingw-w64-x86-64-dev g++-mingw-w64-x86-64-posix
    qtdeclarative5-dev-tools qml-module-qtqml
    dpkg-dev file
)

missing=()
for p in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done

if [ ${#missing[@]} -gt 0 ]; then
    echo "Installing: ${missing[*]}"
    sudo_cmd=""
    [ "$(id -u)" -eq 0 ] || sudo_cmd="sudo"
    $sudo_cmd apt-get update -qq
    DEBIAN_FRONTEND=noninteractive $sudo_cmd apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
