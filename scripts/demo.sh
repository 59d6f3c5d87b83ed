#!/usr/bin/env bash
# Sets up and builds the project, then shows the demo station at work: a private Samba server on
# loopback serves its network folder "Plant_Share", the station finds and mounts it, tests it and
# mirrors its results to it once. Then the server stops and nothing stays mounted or running.
#
#   scripts/demo.sh                  the whole demo
#   scripts/demo.sh --keep-running   leaves the server up for station-settings (says how to stop it)
#
# BUILD_DIR picks the build (build/ by default). STATION_DIR picks another station: its
# "Plant_Share" is served at the loopback address it names, with the demo's login.
# DEMO_SKIP_BUILD=1 skips set-up and build (the test that runs the demo sets it).
# The server needs root (or sudo): it runs smbd and adds the share's login as a system user.
set -euo pipefail
cd "$(dirname "$0")/.."

keep_running=0
for argument in "$@"; do
    case $argument in
        --keep-running) keep_running=1 ;;
        -h|--help) sed -n '2,12s/^# \{0,1\}//p' "$0"; exit 0 ;;
        *) echo "demo.sh: unknown argument '$argument' (see --help)" >&2; exit 2 ;;
    esac
done

if [ "${DEMO_SKIP_BUILD:-0}" != 1 ]; then
    scripts/setup.sh
    scripts/build.sh
fi

build_dir=${BUILD_DIR:-build}
tool=$build_dir/apps/station-config/station-config
settings_app=$build_dir/apps/station-settings/station-settings
alias_name=Plant_Share
# The demo document's share password; it is stored obfuscated there.
password=Gearbox-Share-12

say() { printf '%s\n' "$*"; }
indent() { sed 's/^/  /'; }
section() { printf '\n== %s\n' "$*"; }

station=$("$tool" status 2>/dev/null | sed -n 's/^station  *//p')
[ -n "$station" ] || { say "demo.sh: $tool cannot open the station" >&2; exit 1; }
station_config() { "$tool" --station "$station" "$@"; }

# The folder's settings, from "directories.folders.N.KEY=VALUE" lines.
folder_settings=$(station_config list 2>/dev/null | grep '^directories\.folders\.')
index=$(sed -n "s/^directories\.folders\.\([0-9]*\)\.aliasName=$alias_name\$/\1/p" <<<"$folder_settings" | head -n 1)
setting() { sed -n "s/^directories\.folders\.$index\.$1=//p" <<<"$folder_settings"; }
[ -n "$index" ] || { say "demo.sh: the station has no network folder $alias_name" >&2; exit 1; }
address=$(setting address)
share_path=$(setting path)
login=$(setting identifier)
domain=$(setting domain)
host=${address%%:*}
port=445
[ "$host" = "$address" ] || port=${address##*:}
share=${share_path%%/*}

# The demo's results, in the station's results folder (files already there are kept).
results_dir=$(station_config paths 2>/dev/null | awk '$1 == "results" { getline; print $2; exit }')
if [ -n "$results_dir" ]; then
    mkdir -p "$results_dir"
    cp -rn demo/results/. "$results_dir/"
fi

# --- the private server ---------------------------------------------------------------------

as_root() { if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi; }
port_answers() { (exec 3<>"/dev/tcp/127.0.0.1/$1") 2>/dev/null; }

server_dir=""
server_pid=""
mount_backend=$(sed -n 's/.*"shareMountBackend" *: *"\([a-z]*\)".*/\1/p' "$station/preconfiguration.json")

# Why no server can serve this station here, or nothing.
server_obstacle() {
    if [ "$(id -u)" -ne 0 ] && ! command -v sudo >/dev/null; then
        echo "not root and sudo is not installed"
    elif ! command -v smbd >/dev/null && [ ! -x /usr/sbin/smbd ]; then
        echo "smbd is not installed (scripts/setup.sh installs it)"
    elif [ "$host" != 127.0.0.1 ] && [ "$host" != localhost ]; then
        echo "$alias_name is on $host, not on this machine's loopback"
    elif [ "${mount_backend:-cifs}" = fuse ] && [ ! -c /dev/fuse ]; then
        echo "there is no /dev/fuse to mount the share with"
    elif [ "${mount_backend:-cifs}" != fuse ] && ! command -v mount.cifs >/dev/null && [ ! -x /usr/sbin/mount.cifs ]; then
        echo "the station mounts with the kernel client and mount.cifs is not installed"
    elif port_answers "$port"; then
        echo "127.0.0.1:$port is already in use by another program (another demo still running?)"
    fi
}

# Every process of the server's session: smbd leads it, its helpers and connections share it.
server_processes() { [ -z "$server_pid" ] || ps -e -o pid=,sid= | awk -v sid="$server_pid" '$2 == sid { print $1 }'; }

# Up to 5 s for the server's processes to be gone.
wait_for_server_end() {
    for _ in $(seq 50); do
        [ -z "$(server_processes)" ] && return 0
        sleep 0.1
    done
}

stop_server() {
    [ -n "$server_pid" ] || return 0
    as_root kill -TERM "$server_pid" 2>/dev/null || true
    wait_for_server_end
    local left
    left=$(server_processes)
    [ -z "$left" ] || as_root kill -KILL $left 2>/dev/null || true
    wait_for_server_end
    server_pid=""
}

# Mounts the station's tools left behind (none when all went well).
release_mounts() {
    local point
    awk -v root="$station/" 'index($2, root) == 1 { print $2 }' /proc/mounts | while read -r point; do
        say "releasing a mount left at $point"
        fusermount3 -u -z "$point" 2>/dev/null || as_root umount -l "$point" 2>/dev/null || true
    done
}

cleanup() {
    release_mounts
    if [ "$keep_running" -eq 0 ]; then
        stop_server
        [ -z "$server_dir" ] || as_root rm -rf "$server_dir"
    fi
}
trap cleanup EXIT
trap 'exit 130' INT TERM

# For --keep-running: a script that stops the server as stop_server does (smbd writes its logs
# until its last process is gone, so the directory is removed only then) and removes its directory.
write_stop_script() {
    cat >"$server_dir/stop" <<STOP
#!/bin/sh
# Stops the demo's private Samba server (pid $server_pid and its session) and removes $server_dir.
session() { ps -e -o pid=,sid= | awk -v sid=$server_pid '\$2 == sid { print \$1 }'; }
wait_for_end() { for _ in \$(seq 50); do [ -z "\$(session)" ] && return 0; sleep 0.1; done; }
kill -TERM $server_pid 2>/dev/null
wait_for_end
left=\$(session)
[ -z "\$left" ] || kill -KILL \$left 2>/dev/null
wait_for_end
rm -rf "$server_dir"
STOP
    chmod 755 "$server_dir/stop"
}

start_server() {
    server_dir=$(mktemp -d "${TMPDIR:-/tmp}/station-demo-smb.XXXXXX")
    chmod 755 "$server_dir"
    mkdir -p "$server_dir"/{private,lock,state,cache,pid,ncalrpc,log,"$share"}
    chmod 777 "$server_dir/$share"
    [ "$share_path" = "$share" ] || mkdir -p "$server_dir/$share_path"
    cat >"$server_dir/smb.conf" <<CONF
[global]
  workgroup = ${domain:-WORKGROUP}
  server role = standalone server
  interfaces = 127.0.0.1
  bind interfaces only = yes
  smb ports = $port
  disable netbios = yes
  private dir = $server_dir/private
  lock directory = $server_dir/lock
  state directory = $server_dir/state
  cache directory = $server_dir/cache
  pid directory = $server_dir/pid
  ncalrpc dir = $server_dir/ncalrpc
  log file = $server_dir/log/log.smbd
  passdb backend = tdbsam
  rpc start on demand helpers = no
  load printers = no
  printing = bsd
  printcap name = /dev/null
  disable spoolss = yes
  map to guest = never
  server min protocol = SMB2_02
[$share]
  path = $server_dir/$share
  read only = no
  valid users = $login
  force user = root
CONF
    if ! id "$login" >/dev/null 2>&1; then
        as_root useradd --no-create-home --no-user-group --shell /usr/sbin/nologin "$login" || return 1
        say "(added the system user '$login' for the share's login)"
    fi
    printf '%s\n%s\n' "$password" "$password" \
        | as_root smbpasswd -c "$server_dir/smb.conf" -s -a "$login" >/dev/null || return 1
    # As a daemon smbd leads its own session; its pid file names it.
    as_root smbd -D --configfile="$server_dir/smb.conf" --log-basename="$server_dir/log" || return 1
    for _ in $(seq 150); do
        [ -s "$server_dir/pid/smbd.pid" ] && server_pid=$(cat "$server_dir/pid/smbd.pid")
        [ -n "$server_pid" ] && port_answers "$port" && { write_stop_script; return 0; }
        sleep 0.1
    done
    say "smbd did not answer on 127.0.0.1:$port; its log: $server_dir/log/log.smbd"
    return 1
}

# --- the story ------------------------------------------------------------------------------

workplace=$(station_config get general.workplace_name 2>/dev/null || true)
say "Demo station \"$workplace\" in $station"

obstacle=$(server_obstacle)
if [ -n "$obstacle" ]; then
    say "No server for $alias_name: $obstacle. The station without its share:"
    section "Folders and their states"
    station_config folders 2>/dev/null | indent
    exit 0
fi
if ! start_server; then
    say "No server for $alias_name: it did not start (see above). The station without its share:"
    section "Folders and their states"
    station_config folders 2>/dev/null | indent
    exit 1
fi
say "Private Samba server on 127.0.0.1:$port (pid $server_pid), share \"$share\" in $server_dir/$share"

failed=0
section "Folders and their states: the station finds and mounts $alias_name"
station_config folders --wait 15 2>&1 | indent || failed=1

section "Share connection test"
printf '%s\n' "$password" \
    | station_config test-share "$address" "$share_path" --user "$login" ${domain:+--domain "$domain"} 2>&1 | indent \
    || failed=1

section "One sync pass: the station's results to the share"
station_config sync --now 2>&1 | indent || failed=1
mirrored=$(cd "$server_dir/$share_path" && find . -type f ! -name '.*' | sed 's|^\./||' | sort)
say "  on the share ($(grep -c . <<<"$mirrored" || true) files):"
head -n 8 <<<"$mirrored" | sed 's/^/    /'

section "Where to look"
say "  the station's results      $results_dir"
say "  the share, server side     $server_dir/$share_path$([ "$keep_running" -eq 1 ] || echo " (removed when the demo ends)")"
say "  the sync database          $station/storage/sync.db"
say "  the tool's log             $(station_config status 2>/dev/null | sed -n 's/^log  *//p')"
say "  a technician's check       $tool${STATION_DIR:+ --station $station} doctor"

if [ "$keep_running" -eq 1 ]; then
    section "The server keeps running"
    sudo_prefix=""
    [ "$(id -u)" -eq 0 ] || sudo_prefix="sudo "
    say "  open the station:  $settings_app${STATION_DIR:+ --station $station}"
    say "  stop the server:   ${sudo_prefix}sh $server_dir/stop"
else
    stop_server
    release_mounts
    if [ -z "$(awk -v root="$station/" 'index($2, root) == 1' /proc/mounts)" ]; then
        section "Server stopped, nothing left mounted"
    else
        section "Server stopped; still mounted under $station"
        failed=1
    fi
fi
exit "$failed"
