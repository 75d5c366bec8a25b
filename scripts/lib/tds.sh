# Sourced by scripts/test: our own T-SQL server on loopback, over a temporary folder, gone at the end.
#
# tds_start exports
#   VELMORIA_TEST_TDS         complete connect string of an empty database
#   VELMORIA_TEST_TDS_SERVER  the same without user and password
#   VELMORIA_TEST_TDS_UID     a user, who may make others
#   VELMORIA_TEST_TDS_PWD     the right password
source scripts/lib/server.sh
tds_dir=""
tds_port=0
tds_pid=""

# On the port of before, or on any free one the first time.
tds_listen() {
  local port tick
  : >"$tds_dir/port"
  /usr/bin/python3 -B tests/support/tds/server.py --folder "$tds_dir" --port "$tds_port" --database velmoria \
    --user "$VELMORIA_TEST_TDS_UID" --password "$VELMORIA_TEST_TDS_PWD" \
    </dev/null >"$tds_dir/port" 2>>"$tds_dir/server.log" &
  tds_pid=$!
  for tick in {1..300}; do
    port=$(cat "$tds_dir/port")
    [ -z "$port" ] || { tds_port=$port; return 0; }
    kill -0 "$tds_pid" 2>/dev/null || return 1
    sleep 0.1
  done
  return 1
}

tds_start() {
  export VELMORIA_TEST_TDS_UID=velmoria VELMORIA_TEST_TDS_PWD=velmoria
  server_folder tds_dir tds "$(id -un)" tds_stop
  tds_listen || server_failed "$tds_dir"

  export VELMORIA_TEST_TDS_SERVER="Driver=FreeTDS;Server=127.0.0.1;Port=$tds_port;TDS_Version=7.1;ClientCharset=UTF-8;Database=velmoria"
  export VELMORIA_TEST_TDS="$VELMORIA_TEST_TDS_SERVER;UID=$VELMORIA_TEST_TDS_UID;PWD=$VELMORIA_TEST_TDS_PWD"
  echo "The T-SQL server listens on 127.0.0.1:$tds_port"
}

tds_stop() {
  [ -n "$tds_dir" ] || return 0
  cat "$tds_dir/server.log"
  [ -z "$tds_pid" ] || { kill "$tds_pid" && wait "$tds_pid"; } 2>/dev/null || true
  rm -rf "$tds_dir"
  tds_dir=""
}
