# Sourced by the libraries of the test servers: a folder of its own for each, a free port of loopback, and the end.

# server_folder VARIABLE NAME USER STOP    makes the folder of a server, and has STOP called at the end
#
# Under root the folder belongs to the user that the server then runs as, since a server refuses to be root.
server_folder() {
  local -n folder=$1
  folder=$(mktemp -d "/tmp/velmoria-$2.XXXXXX")
  cleanups+=("$4")
  touch "$folder/tools.log"
  [ "$(id -u)" != 0 ] || chown -R "$3": "$folder"
}

# server_run FOLDER USER COMMAND...    runs a tool of a server there, as the user when we are root; its words go to the log
server_run() {
  local folder=$1 user=$2
  shift 2
  [ "$(id -u)" != 0 ] || set -- runuser -u "$user" -- "$@"
  (cd "$folder" && "$@" </dev/null >>"$folder/tools.log" 2>&1)
}

# server_on_free_port COMMAND    calls COMMAND with one free port after the other until it succeeds
server_on_free_port() {
  local attempt port
  for attempt in 1 2 3 4 5 6 7 8 9 10; do
    port=$((20000 + RANDOM % 12000))
    (exec 3<>"/dev/tcp/127.0.0.1/$port") 2>/dev/null && continue
    ! "$1" "$port" || return 0
  done
  return 1
}

# server_failed FOLDER    shows what a server said before it did not start, and ends the run
server_failed() {
  cat "$1"/*.log 2>/dev/null || true
  fail "The test server did not start."
}
