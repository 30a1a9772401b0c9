#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
# Every option in a program's --help is in its man page, and offered by its bash completion.
# Usage: documented.sh PROGRAM MAN_PAGE COMPLETION
set -euo pipefail

program=$1 page=$2 completion=$3
name=$(basename "$program")

mapfile -t options < <("$program" --help | grep -oE '^ +(-[a-z],)?--[a-z-]+' | grep -oE -- '--[a-z-]+')
[ ${#options[@]} -ge 5 ] || {
    echo "only ${#options[@]} options in $name --help: ${options[*]}" >&2
    exit 1
}

# shellcheck source=/dev/null
source "$completion"
COMP_WORDS=("$name" "--") COMP_CWORD=1
"_$name"

failed=0
for option in "${options[@]}"; do
    grep -qF -- "${option//-/\\-}" "$page" || {
        echo "$option is not in $page" >&2
        failed=1
    }
    printf '%s\n' "${COMPREPLY[@]}" | grep -qxF -- "$option" || {
        echo "$option is not offered by $completion" >&2
        failed=1
    }
done
exit $failed
