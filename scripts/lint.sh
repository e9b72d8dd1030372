#!/usr/bin/env bash
# Holds the tree to .clang-format and .clang-tidy. Needs the debug build's compile commands.
# Tests and benchmarks are laid out like the rest, but their frameworks' macros are not ours to lint.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/setup.sh"
cd "$root"

# tidy PRESET CHECKS: the files on stdin, NUL after each
tidy() {
  xargs -0 -P "$(nproc)" -n 1 clang-tidy -p "build/$1" --quiet --checks="$2" 2> >(grep -vE 'warnings? generated' >&2)
}

mapfile -t sources < <(git ls-files -co --exclude-standard -- '*.cpp' '*.h')
clang-format --dry-run -Werror "${sources[@]}"

# Most checks look into all that a source includes, which many sources together do once. The analyzer follows the paths
# of a source's own functions only.
cmake --preset lint >/dev/null
sed -nE '/mocs_compilation/d; s/^ *"file": "(.*)",?$/\1/p' build/lint/compile_commands.json | tr '\n' '\0' |
  tidy lint '-clang-analyzer-*'
git ls-files -zco --exclude-standard -- 'src/*.cpp' 'host/*.cpp' | tidy debug '-*,clang-analyzer-*'
