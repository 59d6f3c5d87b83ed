#!/usr/bin/env bash
# Checks every source of the configuration library with clang for x86_64-w64-windows-gnu:
# MinGW's C and C++ headers (Debian's mingw-w64 packages) and Qt's headers, which are
# platform-neutral apart from the configuration of the Linux build (qconfig.h).
# Usage: windows_syntax.sh CLANGXX SOURCE_DIR EXPORT_HEADERS_DIR
set -uo pipefail
clangxx=$1 source=$2 exports=$3
mingw=/usr/x86_64-w64-mingw32/include
cxx=$(ls -d /usr/lib/gcc/x86_64-w64-mingw32/*/include/c++ 2>/dev/null | sort -V | tail -1)
qt=$(qmake -query QT_INSTALL_HEADERS 2>/dev/null || true)
[ -x "$clangxx" ] || { echo "SKIP: clang++ not found"; exit 77; }
[ -f "$mingw/windows.h" ] && [ -n "$cxx" ] || { echo "SKIP: MinGW headers missing (mingw-w64-x86-64-dev, g++-mingw-w64-x86-64-posix)"; exit 77; }
[ -n "$qt" ] && [ -d "$qt/QtCore" ] || { echo "SKIP: Qt headers not found"; exit 77; }

flags=(--target=x86_64-w64-windows-gnu -std=c++17 -fsyntax-only -Wall -Wextra -nostdinc
       -isystem "$cxx" -isystem "$cxx/x86_64-w64-mingw32" -isystem "$cxx/backward"
       -isystem "$("$clangxx" -print-resource-dir)/include" -isystem "$mingw"
       -isystem "$qt" -isystem "$qt/QtCore" -isystem "$qt/QtQml" -isystem "$qt/QtNetwork" -isystem "$qt/QtSql"
       -I "$source/interfaces" -I "$exports" -I "$exports/configuration" -I "$source/lib_configuration/source")
export clangxx
check() { "$clangxx" "${@:2}" "$1" 2>&1 >/dev/null | sed "s|^|$(basename "$1"): |" >&2; return "${PIPESTATUS[0]}"; }
export -f check

files=("$source"/lib_configuration/source/*.cpp)
failed=$(printf '%s\0' "${files[@]}" | xargs -0 -P2 -I{} bash -c 'check "$@" || echo x' _ {} "${flags[@]}" | wc -l)
echo "${#files[@]} sources checked for Windows, $failed with errors"
[ "$failed" -eq 0 ]
