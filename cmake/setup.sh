# Sourced by the scripts: packages, configuration and build. Everything is said on stderr.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
preset=mingw-i686-release
build=$root/build/$preset

# What the releases of Debian have in different versions; those that are not listed, packages without a number.
codename=$(. /etc/os-release 2>/dev/null && echo "${VERSION_CODENAME:-}" || true)
from=() release_packages=()
case $codename in
  bookworm)
    llvm=-14
    # For the benchmarks: later releases have version 3.
    release_packages=(catch2)
    # Given by name, Debian's own release wins over newer ones that the other architecture may lack.
    from=(-t bookworm)
    ;;
  trixie) llvm=-19 ;;
  *) llvm='' ;;
esac
packages=(wine wine64 wine32:i386 g++-mingw-w64-i686-posix cmake ninja-build googletest libcli11-dev
          nlohmann-json3-dev python3 fonts-dejavu-core "clang$llvm" "libclang-rt$llvm-dev" xvfb xauth openssl osslsigncode "${release_packages[@]}")

say() { echo "startup-manager: $*" >&2; }

missing_packages() {
  local package
  for package in "${packages[@]}"; do
    [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" = installed ] || echo "$package"
  done
}

# Installs what is missing on Debian. A stale package index alone is no reason to stop.
install_packages() {
  local missing
  command -v dpkg-query >/dev/null || return 0
  mapfile -t missing < <(missing_packages)
  [ ${#missing[@]} -gt 0 ] || return 0
  if [ "$(id -u)" -ne 0 ]; then
    say "these packages are missing; install them, or run this script once as root: ${missing[*]}"
    exit 1
  fi
  say "installing ${missing[*]}"
  export DEBIAN_FRONTEND=noninteractive
  {
    dpkg --add-architecture i386
    apt-get update || true
    apt-get install -y "${from[@]}" --no-install-recommends "${missing[@]}"
  } </dev/null >&2
}

# Makes the folder build say how everything is built.
configure() {
  mkdir -p "$root/build"
  if [ ! -f "$build/build.ninja" ]; then
    say "configuring"
    (cd "$root" && cmake --preset "$preset" -B "$build") >&2
  fi
}

# build_targets TARGET...: configures if need be and builds.
build_targets() {
  configure
  # Two runs at once must not build into each other.
  local ninja=(flock "$root/build/.lock" ninja -C "$build")
  if [[ $("${ninja[@]}" -n "$@") != *"no work to do"* ]]; then
    say "building"
    "${ninja[@]}" "$@" >&2
  fi
}

# What every Wine process here runs with. Tests and lists must not start programs of their own.
wine_environment() {
  export WINEDEBUG=${WINEDEBUG:--all}
  export WINEDLLOVERRIDES="mscoree,mshtml=;winedbg.exe,winemenubuilder.exe=d${WINEDLLOVERRIDES:+;$WINEDLLOVERRIDES}"
  # Arguments are UTF-8.
  case ${LC_ALL:-${LC_CTYPE:-${LANG:-}}} in
    *[Uu][Tt][Ff]8 | *[Uu][Tt][Ff]-8) ;;
    *) export LC_ALL=C.UTF-8 ;;
  esac
}
