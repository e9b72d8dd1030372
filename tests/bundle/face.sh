#!/usr/bin/env bash
# The module's library shows one symbol and needs nothing but the C++ library and the platform.
#   face.sh LIBRARY
set -euo pipefail

expect() {
  if [[ $2 != "$3" ]]; then
    printf '%s\nexpected:\n%s\nfound:\n%s\n' "$1" "$2" "$3"
    exit 1
  fi
}

expect "exported symbols" velCreatePrincipal "$(nm -D --defined-only --format=posix "$1" | cut -d' ' -f1)"
expect "libraries beside those of C and C++" libvelplatform.so \
  "$(readelf -dW "$1" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p' | grep -vxE 'libc\.so\.6|libm\.so\.6|libgcc_s\.so\.1|libstdc\+\+\.so\.6')"
