# Sourced by the other scripts. Installs the packages that a build needs, and builds. It skips what is
# already installed or up to date.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
script=$(basename "$(dirname "$(realpath "$0")")")/$(basename "$0")

die() {
    echo "$script: $1" >&2
    exit 2
}

# need_packages KIND...: installs the packages of these kinds that are missing.
need_packages() {
    command -v apt-get > /dev/null || die "needs a Debian system, because it installs packages with apt-get"
    local kinds=" $* " missing=() kind package
    while read -r kind package; do
        [[ $kinds == *" $kind "* ]] || continue
        dpkg-query -W -f '${Status}' "$package" 2> /dev/null | grep -q 'ok installed' ||
            missing+=("$package")
    done < <(grep -v '^#' "$root/scripts/packages.txt")
    [ ${#missing[@]} -eq 0 ] && return

    [ "$(id -u)" -eq 0 ] ||
        die "packages are missing, and only root can install them; as root, run: apt-get install ${missing[*]}"
    echo "$script: installing ${missing[*]}" >&2
    export DEBIAN_FRONTEND=noninteractive
    local log
    log=$(mktemp)
    if ! { apt-get -q update && apt-get -q install -y --no-install-recommends "${missing[@]}"; } \
        > "$log" 2>&1; then
        local reason
        reason=$(grep -m 1 '^[EW]:' "$log" || true)
        rm -f "$log"
        die "cannot install ${missing[*]} (is there a network?): $reason"
    fi
    rm -f "$log"
}

# build FOLDER TARGET [CMAKE OPTION...]: configures the folder if necessary and builds the target.
# Prints the output only if that fails. An option -S names another source folder than the root.
build() {
    local folder=$root/$1 target=$2 log
    shift 2
    log=$(mktemp)
    if ! { { [ -f "$folder/build.ninja" ] || cmake -S "$root" -B "$folder" -G Ninja "$@"; } &&
        cmake --build "$folder" --target "$target"; } > "$log" 2>&1; then
        cat "$log" >&2
        rm -f "$log"
        die "the build failed; see the output above"
    fi
    rm -f "$log"
}

# need_node_modules: installs the npm packages of the pages, and Node.js if it is missing.
need_node_modules() {
    # Node.js may come from elsewhere than Debian, with npm in the same package.
    command -v node > /dev/null && command -v npm > /dev/null || need_packages node
    local folder=$root/report/page
    cmp --silent "$folder/package-lock.json" "$folder/node_modules/.for-lock" && return
    (cd "$folder" && npm ci --no-progress > /dev/null && cp package-lock.json node_modules/.for-lock)
}
