# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
#
# bash completion.bash PROGRAM COMPLETION
# Fails when the completion does not offer what fits the line.

set -u
directory=$(mktemp -d)
trap 'rm -r "$directory"' EXIT
ln -s "$1" "$directory/zyslicer"
PATH=$directory:$PATH
HOME=$directory
export ZYSLICER_SETTINGS=$directory/own.ini
zyslicer printers add own1 ws://10.0.0.1:80
zyslicer --settings "$directory/new.ini" printers add new1 ws://10.0.0.2:80
zyslicer --settings "$directory/new.ini" printers add new2 ws://10.0.0.3:80

# As bash-completion's does with "-s -n :": words are neither parted at '=' nor at ':', but the last
# one is, when it is a long option with its value.
_init_completion()
{
    [[ $* == '-s -n :' ]] || echo "called with '$*'"
    words=("${line[@]}")
    cword=$((${#words[@]} - 1))
    cur=${words[cword]}
    prev=${words[cword - 1]}
    if [[ $cur == --?*=* ]]; then
        prev=${cur%%=*}
        cur=${cur#*=}
        split=true
    fi
}
# shellcheck source=/dev/null
source "$2"

status=0
# offers EXPECTED WORD...: what is offered for the last of the words.
offers()
{
    local expected=$1 line=("${@:2}") COMPREPLY=()
    _zyslicer
    if [[ ${COMPREPLY[*]} != "$expected" ]]; then
        echo "${line[*]}: offers '${COMPREPLY[*]}', not '$expected'"
        status=1
    fi
}

offers 'send set' zyslicer se
offers own1 zyslicer send --to ''
offers own1 zyslicer send --to=o
offers '' zyslicer send --to=x
offers '' zyslicer send --token=s
offers own1 zyslicer printers remove o
offers 'new1 new2' zyslicer --settings "$directory/new.ini" send --to ''
offers 'new1 new2' zyslicer "--settings=$directory/new.ini" status --to n
# shellcheck disable=SC2088
offers 'new1 new2' zyslicer --settings '~/new.ini' printers remove ''
# shellcheck disable=SC2088
offers 'new1 new2' zyslicer '--settings=~/new.ini' send x --to ''
offers '' zyslicer --settings "$directory/none.ini" send --to ''
offers --stall zyslicer send --st
exit $status
