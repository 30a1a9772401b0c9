# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
# Bash completion for zypanel.

_zypanel()
{
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]}
    COMPREPLY=()
    case $previous in
        -t | --token | --fingerprint) return ;;
        --ca)
            compopt -o filenames
            mapfile -t COMPREPLY < <(compgen -f -- "$current")
            return
            ;;
    esac
    if [[ $current == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W '--help --help-all --version --token --ca --fingerprint' -- "$current")
        return
    fi

    # The first word that is no option names the printer, the second the file.
    local index words=0
    for ((index = 1; index < COMP_CWORD; index++)); do
        case ${COMP_WORDS[index]} in
            -t | --token | --ca | --fingerprint) ((index++)) ;;
            -*) ;;
            # ':' breaks words, so that an address arrives in pieces.
            : | //*) ;;
            *) [[ ${COMP_WORDS[index-1]} == : ]] || ((words++)) ;;
        esac
    done
    if ((words == 0)); then
        mapfile -t COMPREPLY < <(compgen -W 'ws://' -- "$current")
        compopt -o nospace
    else
        compopt -o filenames
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
    fi
}
complete -F _zypanel zypanel
