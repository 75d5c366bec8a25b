# Sourced by scripts/test: a throw-away PostgreSQL on loopback, in a temporary folder, gone at the end.
#
# postgres_start exports
#   VELMORIA_TEST_PG         complete connect string of an empty database
#   VELMORIA_TEST_PG_SERVER  the same without user and password; the server insists on the password (SCRAM)
#   VELMORIA_TEST_PG_UID     the database's owner
#   VELMORIA_TEST_PG_PWD     the right password
postgres_dir=""

# The server refuses to run as root; then it runs as the user postgres.
postgres_run() {
  local bin=/usr/lib/postgresql/15/bin tool=$1
  shift
  if [ "$(id -u)" = 0 ]; then set -- runuser -u postgres -- "$bin/$tool" "$@"; else set -- "$bin/$tool" "$@"; fi
  (cd "$postgres_dir" && "$@" </dev/null >>"$postgres_dir/tools.log" 2>&1)
}

postgres_start() {
  local port attempt
  postgres_dir=$(mktemp -d /tmp/velmoria-pg.XXXXXX)
  cleanups+=(postgres_stop)
  touch "$postgres_dir/tools.log"
  [ "$(id -u)" != 0 ] || chown -R postgres: "$postgres_dir"
  postgres_run initdb -D "$postgres_dir/data" -U postgres -E UTF8 --locale=C.UTF-8 -N \
    --auth-local=trust --auth-host=scram-sha-256 || postgres_failed

  for attempt in 1 2 3 4 5 6 7 8 9 10; do
    port=$((20000 + RANDOM % 12000))
    (exec 3<>"/dev/tcp/127.0.0.1/$port") 2>/dev/null && continue
    postgres_run pg_ctl -D "$postgres_dir/data" -w -l "$postgres_dir/log" start -o "-p $port -k $postgres_dir \
      -c listen_addresses=127.0.0.1 -c fsync=off -c synchronous_commit=off -c full_page_writes=off" && break
    [ "$attempt" -lt 10 ] || postgres_failed
  done

  local psql=(psql -h "$postgres_dir" -p "$port" -U postgres -d postgres -q)
  postgres_run "${psql[@]}" -c "CREATE ROLE velmoria LOGIN CREATEDB PASSWORD 'velmoria'" || postgres_failed
  postgres_run "${psql[@]}" -c "CREATE DATABASE velmoria OWNER velmoria" || postgres_failed

  export VELMORIA_TEST_PG_UID=velmoria VELMORIA_TEST_PG_PWD=velmoria
  export VELMORIA_TEST_PG_SERVER="Driver=PostgreSQL Unicode;Server=127.0.0.1;Port=$port;Database=velmoria"
  export VELMORIA_TEST_PG="$VELMORIA_TEST_PG_SERVER;UID=$VELMORIA_TEST_PG_UID;PWD=$VELMORIA_TEST_PG_PWD"
  echo "PostgreSQL listens on 127.0.0.1:$port"
}

postgres_failed() {
  cat "$postgres_dir/tools.log" "$postgres_dir/log" 2>/dev/null || true
  fail "The test server did not start."
}

postgres_stop() {
  [ -n "$postgres_dir" ] || return 0
  [ ! -f "$postgres_dir/data/postmaster.pid" ] ||
    postgres_run pg_ctl -D "$postgres_dir/data" -m immediate -w stop
  rm -rf "$postgres_dir"
  postgres_dir=""
}
