# Sourced by every command in scripts/: strictness, progress lines, and the one clear line at the end.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/../.."
name=scripts/${0##*/}

# Root may look at a tree that a plain user owns, as a CI does.
export GIT_CONFIG_COUNT=1 GIT_CONFIG_KEY_0=safe.directory GIT_CONFIG_VALUE_0=$PWD

current=start
done_with=""
cleanups=()

# Says what comes next.
step() {
  current=$1
  printf '\n== %s\n' "$1"
}

# Sets the closing line of a command that went well.
finish() { done_with=$1; }

fail() {
  printf '%s\n' "$*" >&2
  exit 1
}

# Runs a command as root, by sudo where needed.
as_root() {
  if [ "$(id -u)" = 0 ]; then "$@"; return; fi
  command -v sudo >/dev/null || fail "Installing packages needs root: run $name as root, or install sudo."
  sudo "$@"
}

# Configures a preset; says nothing unless it fails. Later runs are quick, since CMake looks only at what changed.
configure() {
  local log=build/$1.configure.log
  mkdir -p build
  cmake --preset "$@" >"$log" 2>&1 || { cat "$log"; fail "CMake could not configure preset $1."; }
}

# The C++ files of the tree, committed or not.
cpp_files() { git ls-files -co --exclude-standard '*.cpp' '*.h' | while read -r file; do [ ! -f "$file" ] || echo "$file"; done; }

at_exit() {
  local code=$? cleanup
  trap - EXIT
  for cleanup in "${cleanups[@]}"; do "$cleanup" || true; done
  if [ "$code" = 0 ] && [ -n "$done_with" ]; then
    printf '\n%s: %s (%d s)\n' "$name" "$done_with" "$SECONDS"
  else
    [ "$code" != 0 ] || code=1
    printf '\n%s: FAILED while: %s (%d s)\n' "$name" "$current" "$SECONDS"
  fi
  exit "$code"
}
trap at_exit EXIT
trap 'exit 130' INT
trap 'exit 143' TERM
