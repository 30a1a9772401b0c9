# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
# bash completion for zybridge

_zybridge()
{
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    COMPREPLY=()
    if [ "$previous" = --config ]; then
        compopt -o filenames
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
        return
    fi
    mapfile -t COMPREPLY < <(compgen -W "--config --check-config --help --version" -- "$current")
}
complete -F _zybridge zybridge
