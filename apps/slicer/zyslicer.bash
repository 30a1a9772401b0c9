# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
# bash completion for zyslicer

# The saved names, of the settings that the line names.
_zyslicer_names()
{
    local i settings=()
    for ((i = 1; i < cword; ++i)); do
        case ${words[i]} in
            --settings) settings=(--settings "${words[i + 1]/#\~\//$HOME/}") ;;
            --settings=*) settings=("${words[i]/#--settings=\~\//--settings=$HOME/}") ;;
        esac
    done
    zyslicer "${settings[@]}" printers 2>/dev/null | cut -d' ' -f1
}

# The names of printers on the network, which hold any characters.
_zyslicer_announced()
{
    local name
    while IFS= read -r name; do
        printf -v name %q "dnssd:$name"
        [[ $name == "$cur"* ]] && COMPREPLY+=("$name")
    done < <(zyslicer discover 2>/dev/null | sed -e 1d -e 's/  .*//')
    declare -F __ltrim_colon_completions >/dev/null && __ltrim_colon_completions "$cur"
}

_zyslicer()
{
    local cur prev words cword split=false
    # "--to=x" becomes the option and its value.
    _init_completion -s -n : || return

    local commands='send print pause stop status set version cancel printers discover'
    local printer='--to --all --token --ca --fingerprint --connect-timeout --timeout --check-timeout'
    local retry='--retries --back-off'
    local watch='--watch --interval'
    local common='--json --quiet --verbose --settings --help'
    local keys='initExposure= delayLight= printExposure= printHeight= eleSpeed= bottomExposureNum='

    case $prev in
        --to)
            # URLs are typed; saved names are completed, and after "dnssd:" those on the network.
            case $cur in
                dnssd:*) _zyslicer_announced ;;
                *) COMPREPLY=($(compgen -W "$(_zyslicer_names)" -- "$cur")) ;;
            esac
            return
            ;;
        --settings | --ca)
            _filedir
            return
            ;;
        --compression)
            COMPREPLY=($(compgen -W "0 1 2 3 4 5 6 7 8 9" -- "$cur"))
            return
            ;;
        --wait)
            # A flag, but for one command.
            [[ " ${words[*]} " == *' discover '* ]] && return
            ;;
        --token | --fingerprint | --as | --limit-rate | --stall | --retries | --back-off | --interval | --*timeout)
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

    # The value of an option that is not completed.
    $split && return

    local options
    case $command in
        '') options="$commands --version --verbose --settings --help" ;;
        send)
            options="$printer $retry $watch --as --compression --keep --limit-rate --no-digest --stall
                --print --wait $common"
            ;;
        print) options="$printer $retry $watch --wait $common" ;;
        status) options="$printer $retry $watch $common" ;;
        set) options="$printer $common $keys" ;;
        discover) options="--wait $common" ;;
        printers)
            case $prev in
                remove | group) options=$(_zyslicer_names) ;;
                *) options="add group remove --token --ca --fingerprint $common" ;;
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
