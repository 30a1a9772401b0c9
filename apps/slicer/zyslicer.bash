# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
# bash completion for zyslicer

_zyslicer()
{
    local cur prev words cword
    _init_completion -n =: || return

    local commands='send print pause stop status set version cancel printers'
    local printer='--to --token --connect-timeout --timeout --check-timeout'
    local retry='--retries --back-off'
    local watch='--watch --interval'
    local common='--json --quiet --verbose --settings --help'
    local keys='initExposure= delayLight= printExposure= printHeight= eleSpeed= bottomExposureNum='

    case $prev in
        --to)
            # URLs are typed; saved names are completed.
            COMPREPLY=($(compgen -W "$(zyslicer printers 2>/dev/null | cut -d' ' -f1)" -- "$cur"))
            return
            ;;
        --settings)
            _filedir
            return
            ;;
        --token | --as | --stall | --retries | --back-off | --interval | --*timeout)
            return
            ;;
    esac

    local command='' word
    for word in "${words[@]:1:cword-1}"; do
        if [[ " $commands " == *" $word "* ]]; then
            command=$word
            break
        fi
    done

    local options
    case $command in
        '') options="$commands --version --verbose --settings --help" ;;
        send) options="$printer $retry $watch --as --stall --print $common" ;;
        print | status) options="$printer $retry $watch $common" ;;
        set) options="$printer $common $keys" ;;
        printers)
            case $prev in
                remove) options=$(zyslicer printers 2>/dev/null | cut -d' ' -f1) ;;
                *) options="add remove $common" ;;
            esac
            ;;
        *) options="$printer $common" ;;
    esac

    if [[ $command == send && $cur != -* ]]; then
        _filedir
        return
    fi
    COMPREPLY=($(compgen -W "$options" -- "$cur"))
    [[ ${COMPREPLY-} == *= ]] && compopt -o nospace
} &&
    complete -F _zyslicer zyslicer
