#!/usr/bin/env bash
# Measures `vxpk serve` on the "many" package (20,000 files of 200 B to 40 KB):
# the time from starting it to the first answer a client gets, its peak
# memory under load, and the requests per second `wrk` gets for the small
# files (4 KB or less) beside nginx serving the extracted tree on the same
# loopback, in the same run, one after the other.
#   bench/serve.sh BIN_DIR VXPK   BIN_DIR holds make_tree; VXPK is the tool
# VX_BENCH_DIR (default $TMPDIR/vx-bench) is the scratch folder, shared with
# bench/pack.sh; VX_BENCH_ROUNDS (default 5) the start-up rounds;
# VX_BENCH_SECONDS (default 10) each wrk run; VX_BENCH_NGINX_PORT (default
# 18473) nginx's port.
set -euo pipefail

bin_dir=$(cd "$1" && pwd)
vxpk=$(cd "$(dirname "$2")" && pwd)/$(basename "$2")
scratch=${VX_BENCH_DIR:-${TMPDIR:-/tmp}/vx-bench}
rounds=${VX_BENCH_ROUNDS:-5}
seconds=${VX_BENCH_SECONDS:-10}
nginx_port=${VX_BENCH_NGINX_PORT:-18473}
for tool in wrk nginx curl /usr/bin/time; do
    command -v "$tool" >/dev/null ||
        { echo "serve: $tool is missing (scripts/install-deps.sh bench installs it)" >&2; exit 2; }
done
# make_tree, now_ns and median.
# shellcheck source=bench/compare.sh
. "$(dirname "$0")/compare.sh"
mkdir -p "$scratch"
package=$scratch/many-serve.vxpk
tree=$scratch/many-serve-extracted

make_tree many
if [ ! -e "$package" ] || [ ! -d "$tree" ]; then
    rm -rf "$package" "$tree"
    "$vxpk" pack "$scratch/many" "$package" --name Many --uid bench.many --quiet
    "$vxpk" extract "$package" "$tree" --quiet
fi
# The small files as request paths; wrk goes round them.
paths=$scratch/serve-paths.txt
(cd "$tree" && find . -type f -size -4097c | sed 's|^\.||' | sort) >"$paths"
first=$(head -1 "$paths")

server_pid=
# Under GNU time the server is time's child, and the signal must reach it.
stop_server() {
    if [ -n "$server_pid" ]; then
        kill -TERM "$(pgrep -P "$server_pid" || echo "$server_pid")" 2>/dev/null || true
        wait "$server_pid" 2>/dev/null || true
        server_pid=
    fi
}
trap stop_server EXIT

# Starts `vxpk serve` (under GNU time when $1 is a file for its report) and
# sets url once the server has said it.
start_server() {
    : >"$scratch/serve.url"
    if [ -n "${1:-}" ]; then
        /usr/bin/time -f "%M" -o "$1" "$vxpk" serve "$package" >"$scratch/serve.url" 2>/dev/null &
    else
        "$vxpk" serve "$package" >"$scratch/serve.url" 2>/dev/null &
    fi
    server_pid=$!
    until [ -s "$scratch/serve.url" ]; do :; done
    url=$(head -1 "$scratch/serve.url")
    url=${url%/}
}

echo "start to first answer of $first (median of $rounds):"
: >"$scratch/serve-start.times"
for _ in $(seq "$rounds"); do
    start=$(now_ns)
    start_server
    curl -sf -o /dev/null "$url$first"
    end=$(now_ns)
    stop_server
    echo $(((end - start) / 1000000)) >>"$scratch/serve-start.times"
done
echo "  vxpk serve $(median "$scratch/serve-start.times" 1) ms (all: $(tr '\n' ' ' <"$scratch/serve-start.times"))"

cat >"$scratch/serve-paths.lua" <<LUA
local paths = {}
for line in io.lines("$paths") do paths[#paths + 1] = line end
local at = 0
request = function()
    at = at % #paths + 1
    return wrk.format("GET", paths[at])
end
LUA

cat >"$scratch/nginx.conf" <<NGINX
worker_processes 2;
daemon off;
pid $scratch/nginx.pid;
error_log $scratch/nginx.err;
events { worker_connections 1024; }
http {
    access_log off;
    client_body_temp_path $scratch/nginx-body;
    proxy_temp_path $scratch/nginx-proxy;
    fastcgi_temp_path $scratch/nginx-fastcgi;
    uwsgi_temp_path $scratch/nginx-uwsgi;
    scgi_temp_path $scratch/nginx-scgi;
    server { listen 127.0.0.1:$nginx_port; root $tree; }
}
NGINX

# Requests per second from wrk's summary.
rate() {
    wrk -t2 -c32 -d"${seconds}s" -s "$scratch/serve-paths.lua" "$1" |
        awk '/Requests\/sec/ { print $2 } /Non-2xx/ { print "non-2xx answers: " $0 > "/dev/stderr" }'
}

echo "requests per second, $(wc -l <"$paths") small files, wrk -t2 -c32 -d${seconds}s:"
start_server "$scratch/serve-peak.kb"
ours=$(rate "$url")
stop_server
nginx -p "$scratch" -c "$scratch/nginx.conf" -e "$scratch/nginx.err" &
nginx_pid=$!
until curl -sf -o /dev/null "http://127.0.0.1:$nginx_port$first"; do sleep 0.05; done
theirs=$(rate "http://127.0.0.1:$nginx_port")
kill -QUIT "$nginx_pid"
wait "$nginx_pid" || true
awk -v o="$ours" -v t="$theirs" 'BEGIN { printf "  vxpk serve %.0f  nginx %.0f  ratio %.2f\n", o, t, o / t }'
echo "peak memory of vxpk serve under that load: $(($(tail -1 "$scratch/serve-peak.kb") / 1024)) MB"
