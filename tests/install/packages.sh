#!/usr/bin/env bash
# Builds the Debian packages of a build tree, installs them with apt-get on this machine, runs
# the installed tools with the source and build trees hidden (a private mount namespace with
# empty file systems over them), then removes every package the installation added.
# Usage: packages.sh BUILD_DIR SOURCE_DIR WORK_DIR      (exit 77: skipped, with the reason)
set -uo pipefail
build=$(realpath "$1") source=$(realpath "$2") work=$3
skip() { echo "SKIP: $*"; exit 77; }
[ "$(id -u)" -eq 0 ] || skip "installing packages needs root"
command -v apt-get >/dev/null && command -v dpkg-shlibdeps >/dev/null || skip "apt-get or dpkg-shlibdeps (dpkg-dev) missing"
unshare -m true 2>/dev/null || skip "no mount namespaces here (unshare -m)"
packages=(libstation-configuration1 libstation-configuration-dev station-tools)
for p in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "ok installed" && skip "$p is already installed on this machine"
done

rm -rf "$work"; mkdir -p "$work"
cpack --config "$build/CPackConfig.cmake" -B "$work" >"$work/cpack.log" 2>&1 || { cat "$work/cpack.log"; exit 1; }
debs=("$work"/*.deb)
[ ${#debs[@]} -eq 3 ] || { echo "expected 3 packages, got: ${debs[*]}"; exit 1; }

before=$(dpkg-query -W -f='${Package}\n' | sort)
cleanup() {
    local added
    added=$(comm -13 <(echo "$before") <(dpkg-query -W -f='${Package}\n' | sort))
    [ -z "$added" ] || DEBIAN_FRONTEND=noninteractive apt-get purge -y -qq $added >"$work/purge.log" 2>&1 \
        || { echo "could not remove: $added"; cat "$work/purge.log"; }
}
trap cleanup EXIT
DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${debs[@]}" >"$work/apt.log" 2>&1 \
    || { cat "$work/apt.log"; exit 1; }

status=0
fail() { echo "FAIL: $*"; status=1; }
for p in "${packages[@]}"; do
    echo "$p: $(dpkg-query -W -f='${Depends}' "$p")"
done
# No installed file names the trees it was built from.
files=$(dpkg -L "${packages[@]}" | sort -u | while read -r f; do [ -f "$f" ] && echo "$f"; done)
leaks=$(echo "$files" | xargs grep -l -a -F -e "$build" -e "$source" 2>/dev/null)
[ -z "$leaks" ] || fail "installed files name the source or build tree: $leaks"
readelf -d /usr/bin/station-config | grep -q 'RUNPATH.*\$ORIGIN' || fail "station-config has no \$ORIGIN RUNPATH"
objdump -p /usr/lib/libStationConfiguration.so.1 2>/dev/null | grep -q 'SONAME *libStationConfiguration.so.1' \
    || fail "libStationConfiguration.so.1 missing or without its SONAME"
[ -x /usr/libexec/station-smbmount ] || fail "mount helper not installed"
[ -f /usr/share/applications/station-settings.desktop ] || fail "desktop entry not installed"
qmltypes=$(qmake -query QT_INSTALL_QML)/App/App.qmltypes
if [ -x "$(command -v qmllint)" ]; then
    "$source/tests/qmltypes/qmllint_app.sh" "$(command -v qmllint)" "$qmltypes" "$source"/apps/station-settings/qml/*.qml \
        || fail "qmllint with the installed $qmltypes"
fi

# The installed programs, with the trees hidden.
hidden="mount -t tmpfs none '$source'"
case "$build" in "$source"/*) ;; *) hidden+=" && mount -t tmpfs none '$build'" ;; esac
home=$(mktemp -d)
unshare -m bash -c "$hidden && cd / && HOME='$home' XDG_STATE_HOME='$home/state' XDG_RUNTIME_DIR='$home' \
    QT_QPA_PLATFORM=offscreen QT_QUICK_BACKEND=software sh -c '
    [ -z \"\$(ls -A \"$source\")\" ] || { echo \"source tree still visible\"; exit 9; }
    station-config status --json > $home/status.json 2> $home/status.err; echo \$? > $home/status.rc
    timeout -s TERM 8 station-settings > $home/settings.out 2>&1; echo \$? > $home/settings.rc'" \
    || fail "mount namespace: exit $?"
[ "$(cat "$home/status.rc")" = 0 ] || fail "station-config status exit $(cat "$home/status.rc"): $(cat "$home/status.err")"
python3 -c 'import json,sys; d=json.load(open(sys.argv[1])); assert isinstance(d, dict) and d' "$home/status.json" 2>/dev/null \
    || fail "station-config status --json printed no JSON object: $(head -c 300 "$home/status.json")"
grep -q "demo station" "$home/status.err" || fail "station-config did not use the installed demo station: $(cat "$home/status.err")"
# Still running when stopped: the screens loaded.
[ "$(cat "$home/settings.rc")" = 124 ] || fail "station-settings exit $(cat "$home/settings.rc"): $(tail -5 "$home/settings.out")"
grep -q "catalogue is missing" "$home/settings.out" && fail "station-settings found no catalogue"
rm -rf "$home"
[ $status -eq 0 ] && echo "packages installed, tools ran from /usr with the trees hidden, packages removed"
exit $status
