# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
# bash completion for zymodel

_zymodel()
{
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    COMPREPLY=()
    # Words are parted at '=', too.
    if [[ $current == = ]]; then
        current=''
    elif [[ $previous == = ]]; then
        previous=${COMP_WORDS[COMP_CWORD - 2]}
    fi
    case $previous in
        --out | --check)
            compopt -o filenames
            mapfile -t COMPREPLY < <(compgen -f -- "$current")
            return
            ;;
        --resolution)
            mapfile -t COMPREPLY < <(compgen -W "1440x2560 144x256" -- "$current")
            return
            ;;
        --layers | --seed | --resin)
            return
            ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "--out --check --layers --resolution --seed --resin --help
        --version" -- "$current")
}
complete -F _zymodel zymodel
