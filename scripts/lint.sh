#!/usr/bin/env bash
# Holds the tree to .clang-format and .clang-tidy. Needs the debug build's compile commands.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/setup.sh"
cd "$root"

mapfile -t sources < <(git ls-files -co --exclude-standard -- '*.cpp' '*.h')
clang-format --dry-run -Werror "${sources[@]}"

# Tests and benchmarks are laid out like the rest, but their frameworks' macros are not ours to lint.
mapfile -t linted < <(git ls-files -co --exclude-standard -- 'src/*.cpp' 'host/*.cpp')
printf '%s\n' "${linted[@]}" | xargs -P "$(nproc)" -n 4 clang-tidy -p build/debug --quiet \
  2> >(grep -vE 'warnings? generated' >&2)
