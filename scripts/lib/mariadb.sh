# Sourced by scripts/test: a throw-away MariaDB on loopback, in a temporary folder, gone at the end.
#
# mariadb_start exports
#   VELMORIA_TEST_MARIADB         complete connect string of an empty database
#   VELMORIA_TEST_MARIADB_SERVER  the same without user and password
#   VELMORIA_TEST_MARIADB_UID     a user who may make databases and users
#   VELMORIA_TEST_MARIADB_PWD     the right password
source scripts/lib/server.sh
mariadb_dir=""
mariadb_port=""
mariadb_pid=""

mariadb_run() { server_run "$mariadb_dir" mysql "$@"; }
mariadb_sql() { mariadb_run mariadb --no-defaults -u root -S "$mariadb_dir/socket" -e "$1"; }
mariadb_admin() { mariadb_run mariadb-admin --no-defaults -u root -S "$mariadb_dir/socket" "$1"; }

mariadb_listen() {
  local tick
  mariadb_port=$1
  mariadb_run mariadbd --no-defaults --datadir="$mariadb_dir/data" --socket="$mariadb_dir/socket" --port="$1" \
    --bind-address=127.0.0.1 --skip-name-resolve --character-set-server=utf8mb4 --log-error="$mariadb_dir/server.log" \
    --pid-file="$mariadb_dir/pid" --innodb-flush-log-at-trx-commit=0 --innodb-flush-method=nosync &
  mariadb_pid=$!
  for tick in {1..300}; do
    mariadb_admin ping && return
    kill -0 "$mariadb_pid" 2>/dev/null || return 1
    sleep 0.1
  done
  return 1
}

mariadb_start() {
  server_folder mariadb_dir mariadb mysql mariadb_stop
  mariadb_run mariadb-install-db --no-defaults --datadir="$mariadb_dir/data" --skip-test-db \
    --auth-root-authentication-method=normal || server_failed "$mariadb_dir"
  server_on_free_port mariadb_listen || server_failed "$mariadb_dir"
  mariadb_sql "CREATE USER velmoria@'127.0.0.1' IDENTIFIED BY 'velmoria'" || server_failed "$mariadb_dir"
  mariadb_sql "GRANT ALL ON *.* TO velmoria@'127.0.0.1'" || server_failed "$mariadb_dir"
  mariadb_sql "CREATE DATABASE velmoria" || server_failed "$mariadb_dir"

  export VELMORIA_TEST_MARIADB_UID=velmoria VELMORIA_TEST_MARIADB_PWD=velmoria
  export VELMORIA_TEST_MARIADB_SERVER="Driver=MariaDB Unicode;Server=127.0.0.1;Port=$mariadb_port;Database=velmoria"
  export VELMORIA_TEST_MARIADB="$VELMORIA_TEST_MARIADB_SERVER;UID=$VELMORIA_TEST_MARIADB_UID;PWD=$VELMORIA_TEST_MARIADB_PWD"
  echo "MariaDB listens on 127.0.0.1:$mariadb_port"
}

mariadb_stop() {
  [ -n "$mariadb_dir" ] || return 0
  [ ! -S "$mariadb_dir/socket" ] || mariadb_admin shutdown || true
  [ -z "$mariadb_pid" ] || wait "$mariadb_pid" || true
  rm -rf "$mariadb_dir"
  mariadb_dir=""
}
