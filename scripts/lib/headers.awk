# Checks the include lines of headers against scripts/lib/floors; prints one line for each offence.
# awk -f headers.awk floors header...

function is_private(path) {
  return path ~ /_(data|impl)\.h$/ || (path ~ /^velmoria\/platform\// && path !~ /^velmoria\/platform\/components\//)
}
function offence(text) {
  printf "%s:%d: %s\n", FILENAME, FNR, text
  found = 1
}
function room_of(path, parts) {
  split(path, parts, "/")
  return parts[2]
}

FILENAME == ARGV[1] {
  if (NF && $1 !~ /^#/) {
    room = $1
    sub(/^velmoria\//, "", room)
    $1 = ""
    below[room] = $0 " "
  }
  next
}
FNR == 1 && !/^#pragma once/ { offence("a header starts with #pragma once") }
/^#include </ {
  file = $2
  gsub(/[<>]/, "", file)
  if (file ~ /^(chrono|filesystem|iostream|sstream|fstream|iomanip|regex|ostream|istream)$/)
    offence("<" file "> belongs in sources")
  else if (file == "functional" && FILENAME != "velmoria/runtime/event.h")
    offence("<functional> is for runtime/event.h alone")
  else if (file !~ /^[a-z_0-9]+$/ && file != "boost/smart_ptr/intrusive_ptr.hpp" && !(FILENAME ~ /^velmoria\/platform\/(odbc|posix)\// && file ~ /^[a-z]+\.h$/))
    offence("a header includes no <" file ">")
}
/^#include "/ {
  file = $2
  gsub(/"/, "", file)
  own = room_of(FILENAME)
  other = room_of(file)
  if (file !~ /^velmoria\//)
    offence("includes start at the root: \"velmoria/...\"")
  else if (!is_private(FILENAME) && is_private(file))
    offence("a public header includes the private " file)
  else if (FILENAME ~ /^velmoria\/[a-z]+\.h$/ || FILENAME ~ /_impl\.h$/ || file == "velmoria/fwd.h" || own == other)
    next
  else if (index(below[own] " ", " " other " ") == 0)
    offence("a header of " own " includes " file ", which is not below it")
}
END { exit found }
