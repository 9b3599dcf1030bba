# shellcheck shell=bash disable=SC2034,SC2154
# Sourced by ./run and ./test: which Debian packages the work needs, and how to build.
# The caller has set `root` to the project's folder.

# To build and to run the program, and to make a package of it.
packages_to_run=(
    g++ cmake ninja-build pkg-config ccache
    qt6-base-dev qt6-pdf-dev libxkbcommon-dev libicu-dev libglib2.0-dev librsvg2-bin
    fonts-dejavu-core fonts-noto-color-emoji
    dpkg-dev file
)

# To build and run all of its tests as well.
packages_to_test=(
    "${packages_to_run[@]}"
    libgtest-dev libgmock-dev libbenchmark-dev
    xvfb xdotool openbox x11-utils x11-xkb-utils dbus python3 trash-cli
    lintian appstream desktop-file-utils shared-mime-info libglib2.0-bin
    at-spi2-core gir1.2-atspi-2.0 python3-gi
    qt6-wayland sway grim wtype i3-wm
    git clang-format-14 clang-tidy-14 shellcheck
)

# For ./test --long, tools/tidy among it, besides those.
packages_for_long_tests=(
    clang libclang-rt-14-dev bubblewrap
    e2fsprogs xfsprogs btrfs-progs
)

# For tools/pictures, besides those.
packages_to_contribute=(
    imagemagick
)

log=$root/build/log.txt

say() { printf '%s\n' "$*" >&2; }

# Runs a command; what it prints is shown only when it fails.
quietly() {
    mkdir -p "$root/build"
    if ! "$@" >"$log" 2>&1; then
        cat "$log" >&2
        return 1
    fi
}

missing_packages() {
    local package
    for package in "$@"; do
        case $(dpkg-query -W -f='${db:Status-Abbrev}' "$package" 2>/dev/null) in
            ii*) ;;
            *) printf '%s\n' "$package" ;;
        esac
    done
}

# Installs what is missing of the packages named; touches nothing and no network when all is there.
install_missing() {
    command -v dpkg-query >/dev/null || return 0 # not a Debian: the build says what it lacks
    local missing as_root=()
    mapfile -t missing < <(missing_packages "$@")
    [[ ${#missing[@]} -gt 0 ]] || return 0
    if [[ $(id -u) -ne 0 ]]; then
        if ! command -v sudo >/dev/null; then
            say "Please install as root: ${missing[*]}"
            return 1
        fi
        as_root=(sudo)
    fi
    say "Installing ${missing[*]}"
    quietly "${as_root[@]}" apt-get -q update || return 1
    quietly "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get -qy install --no-install-recommends "${missing[@]}"
}

# configure PRESET [OPTION...]
configure() (cd "$root" && quietly cmake --preset "$@")

# build PRESET [TARGET...]
build() (
    cd "$root" || return
    local preset=$1 targets=()
    shift
    [[ $# -eq 0 ]] || targets=(--target "$@")
    quietly cmake --build --preset "$preset" --parallel "$(nproc)" "${targets[@]}"
)
