# Sourced after checks.bash by checks that need a fresh Debian in a folder. Needs root and the machine's package mirrors.
# shellcheck shell=bash disable=SC2154 # variables of checks.bash
#
# CORVALENCE_DEBIAN may name an archive that keeps a minimal Debian: it is made when missing and used again.

if [ "$(id -u)" -ne 0 ]; then
    echo "$name: NOT CHECKED: only root can run commands in another root folder" >&2
    exit 77
fi

release=$(. /etc/os-release && echo "$VERSION_CODENAME")
archive=${CORVALENCE_DEBIAN:-$work/debian.tar}
root=$work/root
mounts=()

remove_root() {
    local mount
    for mount in "${mounts[@]}"; do
        umount "$mount" || umount --lazy "$mount"
    done
    # Never delete files of the machine through a mount that is still there.
    ! grep -q " $work/" /proc/mounts && rm -rf --one-file-system "$work"
}
trap remove_root EXIT

# The machine's own mirrors.
sources() {
    apt-get indextargets 'Created-By: Packages' 'Origin: Debian' --format 'deb $(REPO_URI) $(RELEASE) $(COMPONENT)'
}

bootstrap() {
    local proxy=
    eval "$(apt-config shell proxy Acquire::http::Proxy)"
    [ -z "$proxy" ] || export http_proxy=$proxy
    debootstrap --variant=minbase "$release" "$work/bootstrap" \
        "$(sources | awk -v release="$release" '$3 == release { print $2; exit }')"
    rm -f "$work"/bootstrap/var/cache/apt/archives/*.deb
    tar --create --file "$archive.part" --directory "$work/bootstrap" .
    mv "$archive.part" "$archive"
    rm -rf --one-file-system "$work/bootstrap"
}

# in_root COMMAND...: runs a command as root in the root folder, without the variables of this process.
in_root() {
    chroot "$root" env -i HOME=/root PATH="${root_path-}/usr/sbin:/usr/bin:/sbin:/bin" LC_ALL=C.UTF-8 \
        DEBIAN_FRONTEND=noninteractive "$@"
}

install_in_root() {
    in_root apt-get -qq -o Dpkg::Use-Pty=0 install --yes --no-install-recommends "$@"
}

[ -e "$archive" ] || expect "make a minimal Debian" bootstrap
mkdir "$root"
tar --extract --file "$archive" --directory "$root"
sources >"$root/etc/apt/sources.list"
apt-config dump | grep -E '^Acquire::[a-z:]*Proxy' >"$root/etc/apt/apt.conf.d/99proxy" || true
cp --dereference /etc/resolv.conf /etc/hosts "$root/etc"
# Packages must not start services.
printf '#!/bin/sh\nexit 101\n' >"$root/usr/sbin/policy-rc.d"
chmod +x "$root/usr/sbin/policy-rc.d"
mount -t proc proc "$root/proc"
mounts=("$root/proc")
expect "read its package lists" in_root apt-get -qq update
expect "upgrade it" in_root apt-get -qq -o Dpkg::Use-Pty=0 upgrade --yes
