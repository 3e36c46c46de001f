# shellcheck shell=bash
# Clean systems of a Debian release, for building and trying things. Sourced after project.sh.

if [ "$(id -u)" -ne 0 ]; then
    echo "This makes a root file system: run it as root." >&2
    exit 1
fi

# make_root SUITE FOLDER: a minimal system, with packages from where this machine gets its own.
# shellcheck disable=SC2016 # what stands in single quotes is for apt-get
make_root() {
    local mirror
    scripts/setup root
    mirror=$(apt-get indextargets --format '$(SITE)' 'Created-By: Packages' 'Label: Debian' |
        awk 'NR == 1 { first = $0 } END { print first }')
    if [ -z "$mirror" ]; then
        echo "apt-get knows no source of Debian's packages to take a root from." >&2
        exit 1
    fi
    say "a clean root of $1"
    rm -rf "$2"
    mkdir -p "$(dirname "$2")"
    # build/ stays its owner's to build in; the roots are root's to delete.
    chown --reference=. build
    mmdebstrap --quiet --variant=minbase "$1" "$2" "$mirror"
}

# in_root FOLDER [SOURCE:TARGET...] -- COMMAND [ARGUMENT...]: runs as root in there, with its own processes and devices, and
# with folders of this machine if asked for. When it ends, however it ends, its mounts and processes are gone.
# shellcheck disable=SC2016 # what stands in single quotes is for the shell in there
in_root() {
    unshare --mount --pid --fork --kill-child bash -euc '
        root=$1
        shift
        mount -t proc proc "$root/proc"
        mount -t tmpfs -o mode=755 run "$root/run"
        mount -t tmpfs -o mode=755 dev "$root/dev"
        for node in null zero full random urandom tty; do
            touch "$root/dev/$node"
            mount --bind "/dev/$node" "$root/dev/$node"
        done
        mkdir -m 1777 "$root/dev/shm"
        ln -s /proc/self/fd "$root/dev/fd"
        while [ "$1" != -- ]; do
            mkdir -p "$root${1#*:}"
            mount --bind "${1%%:*}" "$root${1#*:}"
            shift
        done
        shift
        exec env -i HOME=/root PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive \
            chroot "$root" "$@"
    ' in_root "$@"
}
