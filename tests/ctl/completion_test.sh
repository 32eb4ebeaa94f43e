#!/usr/bin/env bash
# What Tab offers behind a line, in a bash without other completions. Argument: the folder of tvctl.
# Lines end where the cursor is; of what is offered only what stands behind the last "=" or ":" is new to bash.
set -uo pipefail
PATH=$1:$PATH
TARVOLIN_ROOT=$(mktemp -d)
export TARVOLIN_ROOT
trap 'rm -rf "$TARVOLIN_ROOT"' EXIT
cp -r "$(dirname "$0")/../../resources/sample/etc" "$TARVOLIN_ROOT"
eval "$(tvctl completion bash)"

# offered LINE: asks as bash does.
offered() {
    COMP_LINE=$1 COMP_POINT=${#1} COMPREPLY=()
    # Only bash itself splits words as bash does: what matters to a completion is that there are some.
    IFS=' ' read -ra COMP_WORDS <<<"$1"
    COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
    _tvctl tvctl "${COMP_WORDS[COMP_CWORD]}" ''
    echo "${COMPREPLY[*]}"
}

failures=0
# expect LINE WORDS: these are offered, and no others.
expect() {
    local said
    said=$(offered "$1")
    [ "$said" = "$2" ] || { printf 'behind "%s": offered "%s" and not "%s"\n' "$1" "$said" "$2"; failures=1; }
}
# among LINE WORD: this is one of them.
among() {
    [[ " $(offered "$1") " == *" $2 "* ]] || { printf 'behind "%s": "%s" is not offered\n' "$1" "$2"; failures=1; }
}

lines() {
    expect 'tvctl sh' 'show'
    expect 'tvctl --json --timeout 3 comp' 'completion'
    expect 'tvctl pvc ' 'add modify delete'
    expect 'tvctl set --fi' '--file-only'
    expect 'tvctl set --file-only --tim' '--timeout'
    expect 'tvctl completion ' 'bash'
    expect 'tvctl help rev' 'revert'
    expect 'tvctl set --note ' ''
    expect 'tvctl nothing ' ''
    expect 'tvctl show adapter2' 'adapter2/ adapter2'
    expect 'tvctl get adapter1/lecs' 'adapter1/lecs.'
    expect 'tvctl get adapter1/lec2.m' 'adapter1/lec2.mtu adapter1/lec2.mac'
    expect "tvctl get 'adapter1/ip.pvc" 'adapter1/ip.pvcOnly adapter1/ip.pvcFile adapter1/ip.pvcs'
    expect 'tvctl set adapter1/lec2.m' 'adapter1/lec2.mtu='
    expect 'tvctl set adapter1/lec1.mtu=4544 adapter1/lec2.us' 'adapter1/lec2.useLecs='
    expect 'tvctl pvc add adapter1/ip 10.1.2.3 vci 5 no' 'noBroadcast'
    expect 'tvctl pvc add adapter1/l' 'adapter1/lec1 adapter1/lec2 adapter1/lec3 adapter1/lec4'
    expect 'tvctl client move adapter1/le' 'adapter1/les1 adapter1/les2 adapter1/les3 adapter1/les4 adapter1/les5 adapter1/les6 adapter1/les7 adapter1/les8'
    expect 'TARVOLIN_ROOT=/x tvctl revert 4 --dr' '--dry-run'
    expect 'tvctl diff sent dr' 'driver'
    expect 'tvctl watch adapter1/lec2' 'adapter1/lec2 adapter1/lec2.'
    expect 'tvctl watch --rates adapter1.rxP' 'adapter1.rxPackets'
    expect 'tvctl watch adapter1/lec2 adapter1/lec2.conn' 'adapter1/lec2.connections'
    expect 'tvctl watch adapter1.circuits' 'adapter1.circuits. adapter1.circuits'
    expect 'tvctl watch adapter1.circuits.33.r' 'adapter1.circuits.33.rxFrames'
    expect 'tvctl watch adapter1 --in' '--interval'
    expect 'tvctl metrics --output x --p' '--per-vc'
    # The name of a command, of a setting, and of each value of it.
    among 'tvctl ' 'apply'
    local value
    for value in 1516 4544 9234 18190; do among 'tvctl set adapter1/lec2.mtu=' "$prefix$value"; done
    expect 'tvctl set adapter1/signalling.uniRevision=3.1' "${uni}3.1"
    expect "tvctl set 'adapter1/lec2.elanType=t" 'adapter1/lec2.elanType=tokenRing'
}

COMP_WORDBREAKS=$' \t\n"\'><=;|&(:' prefix='' uni=''
lines
COMP_WORDBREAKS=${COMP_WORDBREAKS//[=:]/} prefix='adapter1/lec2.mtu=' uni='adapter1/signalling.uniRevision='
lines

# Every command and every setting that can be set.
for command in $(tvctl help | cut -d' ' -f1); do among 'tvctl ' "$command"; done
while IFS='.' read -r path key; do
    [[ $key =~ ^(mac|pvcFile|clientFile)$ || $key == *[* ]] || among "tvctl set $path.${key:0:2}" "$path.$key="
done < <(tvctl show adapter1/signalling adapter1/lec1 adapter1/les1 adapter1/lecs adapter1/ip | sed 's/ =.*//')
exit $failures
