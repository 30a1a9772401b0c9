# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
# bash completion for zyprinter

_zyprinter()
{
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    COMPREPLY=()
    case $previous in
        --dir | --preview)
            compopt -o filenames
            mapfile -t COMPREPLY < <(compgen -d -- "$current")
            return
            ;;
        --port | --token | --speed | --name | --fail-at | --slow-check)
            return
            ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "--dir --port --token --speed --name --view --preview
        --fail-at --slow-check --refuse --help --version" -- "$current")
}
complete -F _zyprinter zyprinter
