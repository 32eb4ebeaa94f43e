#!/usr/bin/env bash
# The units as systemd reads them, how much their sandboxes leave open, and where the simulator's starts.
set -uo pipefail
cd "$(dirname "$0")/../../resources/systemd" || exit 1
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
failures=0
fail() { echo "$*"; failures=1; }

for unit in *.service; do
    systemd-analyze security --offline=true --threshold=15 --no-pager "$unit" >"$scratch/said" 2>&1 ||
        fail "$unit: $(tail -n 1 "$scratch/said")"
done
# The programs and manuals that they name need not be installed.
said=$(systemd-analyze verify --man=no ./*.service ./*.timer 2>&1 | grep -v 'is not executable: No such file')
[ -z "$said" ] || fail "$said"

# starts PLACE: whether the simulator would be started with this in the driver's place.
starts() {
    local condition
    condition=$(sed -n 's/^ExecCondition=//p' tvsim.service)
    [[ $condition == *" /dev/li "* ]] || fail "no condition about the driver's place: $condition"
    ${condition//\/dev\/li/$1}
}
ln -s /dev/null "$scratch/link"
touch "$scratch/file"
python3 -c 'import socket, sys; socket.socket(socket.AF_UNIX).bind(sys.argv[1])' "$scratch/socket"
for place in nothing socket; do starts "$scratch/$place" || fail "it does not start with $place in the place"; done
for place in /dev/null "$scratch/link" "$scratch/file"; do ! starts "$place" || fail "it starts over $place"; done
exit $failures
