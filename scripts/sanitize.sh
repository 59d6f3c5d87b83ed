#!/usr/bin/env bash
# Builds the library, tools, tests and fuzz harnesses with AddressSanitizer and
# UndefinedBehaviorSanitizer (clang) into build-san/ (SAN_BUILD_DIR overrides), runs the unit
# and integration labels there, then every fuzz harness (scripts/fuzz.sh).
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
build_dir=${SAN_BUILD_DIR:-build-san}
sanitizers="-fsanitize=address,undefined -fno-sanitize-recover=undefined"
flags="-O1 -g -fno-omit-frame-pointer $sanitizers -fsanitize=fuzzer-no-link"
CC=clang CXX=clang++ cmake -S . -B "$build_dir" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DSTATION_FUZZ=ON \
    -DCMAKE_C_FLAGS="$flags" -DCMAKE_CXX_FLAGS="$flags" \
    -DCMAKE_EXE_LINKER_FLAGS="$sanitizers" -DCMAKE_SHARED_LINKER_FLAGS="$sanitizers" -DCMAKE_MODULE_LINKER_FLAGS="$sanitizers"
cmake --build "$build_dir" -j"$(nproc)"

# Full stacks: Qt and Samba carry no frame pointers, and suppressions match deep frames.
export ASAN_OPTIONS="detect_leaks=1:fast_unwind_on_malloc=0:detect_odr_violation=0:${ASAN_OPTIONS:-}"
export LSAN_OPTIONS="suppressions=$PWD/scripts/sanitizers/lsan.supp:print_suppressions=0:${LSAN_OPTIONS:-}"
export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1:${UBSAN_OPTIONS:-}"
ctest --test-dir "$build_dir" --output-on-failure --timeout 600 -L 'unit|integration'
FUZZ_BUILD_DIR="$build_dir" scripts/fuzz.sh
