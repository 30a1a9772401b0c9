# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
# bash completion for zyprinter

_zyprinter()
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
        --dir | --preview)
            compopt -o filenames
            mapfile -t COMPREPLY < <(compgen -d -- "$current")
            return
            ;;
        --cert | --key)
            compopt -o filenames
            mapfile -t COMPREPLY < <(compgen -f -- "$current")
            return
            ;;
        --bind | --port | --token | --speed | --name | --fail-at | --slow-check | \
            --max-size | --keep-free | --max-connections | --allow-origin | --silence)
            return
            ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "--dir --bind --port --token --speed --name --no-announce --view --preview
        --max-size --keep-free --max-connections --allow-origin --silence --cert --key --unprotected
        --fail-at --slow-check --refuse --help --version" -- "$current")
}
complete -F _zyprinter zyprinter
