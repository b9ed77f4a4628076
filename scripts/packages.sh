# What a fresh Debian 12 needs; sourced by ./run and ./test. Everything comes from the distribution.

build_packages=(
  g++ cmake ninja-build ccache pkg-config git ca-certificates
  qt6-base-dev qt6-base-dev-tools qt6-multimedia-dev qt6-svg-dev libgl1-mesa-dev
  libsqlite3-dev libxcb1-dev libxcb-ewmh-dev libgtest-dev
)
# A screen that is not there: X server, window manager, fonts, a hand for the mouse, a tray, a session bus.
screen_packages=(xvfb xauth x11-utils openbox fonts-dejavu-core xdotool trayer dbus-daemon)
style_packages=(clang-format man-db)
tidy_packages=(clang clang-tidy)
fuzz_packages=(clang libclang-rt-14-dev)

say() { printf '\033[1m==>\033[0m %s\n' "$*"; }
fail() { printf '%s\n' "$*" >&2; exit 1; }

missing_packages() {
  local package
  for package in "$@"; do
    dpkg-query -W -f='${db:Status-Status}\n' "$package" 2>/dev/null | grep -qx installed || printf '%s\n' "$package"
  done
}

# install_missing PACKAGE...: installs what is not there; says what, and with which rights.
install_missing() {
  command -v dpkg-query >/dev/null || fail "This needs Debian 12 or a system with the same packages (apt)."
  local missing
  mapfile -t missing < <(missing_packages "$@")
  [ ${#missing[@]} -eq 0 ] && return 0
  local as_root=()
  if [ "$(id -u)" -ne 0 ]; then
    if command -v sudo >/dev/null && { sudo -n true 2>/dev/null || [ -t 0 ]; }; then
      as_root=(sudo)
    else
      fail "Missing packages. Ask an administrator to run:
  apt-get update && apt-get install -y --no-install-recommends ${missing[*]}"
    fi
  fi
  say "Installing ${#missing[@]} package(s): ${missing[*]}"
  local log="$root/build/apt.log"
  mkdir -p "$root/build"
  "${as_root[@]}" apt-get update -qq >"$log" 2>&1 || true
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "${missing[@]}" \
    >>"$log" 2>&1 &
  local job=$! seconds=0
  while kill -0 "$job" 2>/dev/null; do
    sleep 1
    seconds=$((seconds + 1))
    if [ -t 1 ]; then printf '\r    %d s' "$seconds"; elif [ $((seconds % 20)) -eq 0 ]; then echo "    $seconds s ..."; fi
  done
  [ -t 1 ] && printf '\r'
  wait "$job" || { tail -n 20 "$log" >&2; fail "The packages could not be installed; the whole log is $log"; }
}

# build PRESET [TARGET...]: configures if need be and builds with all cores.
build() {
  local preset=$1
  shift
  if [ -z "${HOME:-}" ] || [ ! -w "${HOME:-/nowhere}" ]; then
    export CCACHE_DIR="${CCACHE_DIR:-$root/build/ccache}"
  fi
  say "Building (preset $preset)"
  local log="$root/build/configure-$preset.log"
  mkdir -p "$root/build"
  cmake --preset "$preset" -S "$root" >"$log" 2>&1 || { tail -n 30 "$log" >&2; fail "Configuring failed; see $log"; }
  cmake --build "$root/build/$preset" --parallel "$(nproc)" ${1:+--target "$@"}
}
