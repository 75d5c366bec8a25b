# Sourced by scripts/test and scripts/bench: a throw-away PostgreSQL on loopback, in a temporary folder, gone at the end.
#
# postgres_start exports
#   VELMORIA_TEST_PG         complete connect string of an empty database
#   VELMORIA_TEST_PG_SERVER  the same without user and password; the server insists on the password (SCRAM)
#   VELMORIA_TEST_PG_UID     the database's owner, who may make users
#   VELMORIA_TEST_PG_PWD     the right password
source scripts/lib/server.sh
postgres_dir=""
postgres_port=""

postgres_run() {
  local tool=$1
  shift
  server_run "$postgres_dir" postgres "/usr/lib/postgresql/15/bin/$tool" "$@"
}

postgres_listen() {
  postgres_port=$1
  postgres_run pg_ctl -D "$postgres_dir/data" -w -l "$postgres_dir/server.log" start -o "-p $1 -k $postgres_dir \
    -c listen_addresses=127.0.0.1 -c fsync=off -c synchronous_commit=off -c full_page_writes=off"
}

postgres_sql() { postgres_run psql -h "$postgres_dir" -p "$postgres_port" -U postgres -d postgres -q -c "$1"; }

postgres_start() {
  server_folder postgres_dir pg postgres postgres_stop
  postgres_run initdb -D "$postgres_dir/data" -U postgres -E UTF8 --locale=C.UTF-8 -N \
    --auth-local=trust --auth-host=scram-sha-256 || server_failed "$postgres_dir"
  server_on_free_port postgres_listen || server_failed "$postgres_dir"
  postgres_sql "CREATE ROLE velmoria LOGIN CREATEDB CREATEROLE PASSWORD 'velmoria'" || server_failed "$postgres_dir"
  postgres_sql "CREATE DATABASE velmoria OWNER velmoria" || server_failed "$postgres_dir"

  export VELMORIA_TEST_PG_UID=velmoria VELMORIA_TEST_PG_PWD=velmoria
  export VELMORIA_TEST_PG_SERVER="Driver=PostgreSQL Unicode;Server=127.0.0.1;Port=$postgres_port;Database=velmoria"
  export VELMORIA_TEST_PG="$VELMORIA_TEST_PG_SERVER;UID=$VELMORIA_TEST_PG_UID;PWD=$VELMORIA_TEST_PG_PWD"
  echo "PostgreSQL listens on 127.0.0.1:$postgres_port"
}

postgres_stop() {
  [ -n "$postgres_dir" ] || return 0
  [ ! -f "$postgres_dir/data/postmaster.pid" ] ||
    postgres_run pg_ctl -D "$postgres_dir/data" -m immediate -w stop
  rm -rf "$postgres_dir"
  postgres_dir=""
}
