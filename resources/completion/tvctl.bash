# bash completion for tvctl(8).
#
# Words are taken from the line, since bash splits COMP_WORDS at "=" and ":", too. What it replaces begins behind the
# last of these.
_tvctl() {
    local line=${COMP_LINE:0:COMP_POINT} breaks=${COMP_WORDBREAKS//[^=:]/} words word found
    IFS=$' \t\n' read -ra words <<<"$line"
    until [[ ${#words[@]} -eq 0 || ${words[0]} == "$1" ]]; do words=("${words[@]:1}"); done
    [[ $line == *[[:blank:]] ]] && words+=('')
    word=${words[-1]}
    if [[ $word == [\'\"]* ]]; then
        word=${word:1} breaks=
        words[-1]=$word
    fi
    COMPREPLY=()
    found=$("${1/#'~/'/"$HOME/"}" complete "${words[@]:1}" 2>/dev/null) || compopt -o default 2>/dev/null
    [[ -n $found ]] || return 0
    mapfile -t COMPREPLY <<<"$found"
    [[ -n $breaks && $word == *[$breaks]* ]] && COMPREPLY=("${COMPREPLY[@]#"${word%"${word##*[$breaks]}"}"}")
    [[ ${#COMPREPLY[@]} -eq 1 && $found == *[/.=] ]] && compopt -o nospace 2>/dev/null
    return 0
}
complete -F _tvctl tvctl
