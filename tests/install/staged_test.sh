#!/usr/bin/env bash
# Installs a build into a staging folder, compares what is there with installed.txt, runs the programs from there, and
# uninstalls. Argument: the build folder.
set -euo pipefail
here=$(dirname "$(readlink -f "$0")")
tree=$here/../..
build=$1
export DESTDIR
DESTDIR=$(mktemp -d)
trap 'rm -rf "$DESTDIR"' EXIT

# A package's umask is not known: modes are the installation's. What is there already stays there.
mkdir -p "$DESTDIR/usr/share/man/man8"
(umask 077 && cmake --install "$build" --prefix /usr >/dev/null)

wanted() {
    grep -v '^#' "$here/installed.txt"
    cd "$tree"
    find resources/systemd -name '*.service' -printf '644 /usr/lib/systemd/system/%f\n' -o \
        -name '*.timer' -printf '644 /usr/lib/systemd/system/%f\n'
    find doc/pictures -type f -printf '644 /usr/share/doc/tarvolin/pictures/%P\n'
    (cd fleet/ansible && git ls-files 2>/dev/null || find . -type f -printf '%P\n') |
        grep -vE '^(tests/|lint$|\.)|__pycache__' |
        sed 's:^:644 /usr/share/ansible/collections/ansible_collections/tarvolin/atm/:'
}
diff <(wanted | LC_ALL=C sort -k 2) <(find "$DESTDIR" ! -type d -printf '%m /%P\n' | LC_ALL=C sort -k 2) || {
    echo "Wanted on the left, installed on the right." >&2
    exit 1
}
for size in 16 22 24 32 48 64 128 256; do
    icon=$DESTDIR/usr/share/icons/hicolor/${size}x$size/apps/tarvolin.png
    [ "$(identify -format '%m %wx%h' "$icon")" = "PNG ${size}x$size" ] || { echo "Another size or form: $icon" >&2; exit 1; }
done
cmp "$DESTDIR/usr/share/bash-completion/completions/tvctl" <("$DESTDIR/usr/sbin/tvctl" completion bash)

export PATH=$DESTDIR/usr/sbin:$DESTDIR/usr/bin:$PATH
sample=$DESTDIR/usr/share/doc/tarvolin/examples/atm
sh "$tree/debian/tests/roundtrip" "$sample"
XAPPLRESDIR=$DESTDIR/etc/X11/app-defaults sh "$tree/debian/tests/window" "$sample"

cmake --build "$build" --target uninstall
left=$(find "$DESTDIR" ! -type d -o -name tarvolin)
[ -z "$left" ] || { printf 'Left after uninstalling:\n%s\n' "$left" >&2; exit 1; }
[ -d "$DESTDIR/usr/share/man/man8" ] || { echo "Uninstalling removed a folder of the system." >&2; exit 1; }
