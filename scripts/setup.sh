# Sourced by ./run, ./test and the scripts in bench/: what they need before they can do anything.
# All messages go to stderr; stdout belongs to the program that is started.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

say() { printf '%s: %s\n' "${0##*/}" "$*" >&2; }

die() {
  say "$@"
  exit 1
}

# The packages of packages.txt for the given uses ("run", "test").
listed_packages() {
  local package use rest
  while read -r package use rest; do
    [[ -z $package || $package == \#* ]] && continue
    [[ " $* " == *" $use "* ]] && printf '%s\n' "$package"
  done <"$root/packages.txt"
}

missing_packages() {
  local package
  for package in "$@"; do
    [[ $(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null) == installed ]] || printf '%s\n' "$package"
  done
}

# Installs what is missing, or names it and stops.
ensure_packages() {
  local missing as_root=()
  mapfile -t missing < <(missing_packages $(listed_packages "$@"))
  ((${#missing[@]})) || return 0
  if ((EUID != 0)); then
    if command -v sudo >/dev/null && sudo -n true 2>/dev/null; then
      as_root=(sudo -n)
    else
      die "these Debian packages are missing, and only root can install them: ${missing[*]}"
    fi
  fi
  say "installing ${missing[*]}"
  {
    "${as_root[@]}" apt-get update -q &&
      "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends "${missing[@]}"
  } >&2 || die "could not install: ${missing[*]}"
}

# Configures and builds a preset; silent when there is nothing to do.
build() {
  local preset=$1 log
  shift
  if [[ ! -f $root/build/$preset/build.ninja ]]; then
    say "configuring $preset"
    (cd "$root" && cmake --preset "$preset" >/dev/null) >&2 || die "could not configure $preset"
  fi
  if ninja -C "$root/build/$preset" -n "$@" 2>/dev/null | grep -q 'no work to do'; then
    return 0
  fi
  say "building $preset"
  log=$root/build/$preset/build.log
  ninja -C "$root/build/$preset" "$@" >"$log" 2>&1 || {
    cat "$log" >&2
    die "could not build $preset"
  }
}
