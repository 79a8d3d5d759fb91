# SPDX-FileCopyrightText: The Serimonde developers
# SPDX-License-Identifier: MIT
# shellcheck shell=bash disable=SC2034,SC2207
#
# Completion of the arguments of serimonde-cli in bash.

_serimonde_cli_devices() {
    compgen -G '/dev/serial/by-id/*'
    compgen -G '/dev/tty[SUA]*'
}

# Behind judge, export and replay, which work on a capture.
_serimonde_cli_command() {
    local -A options=(
        [judge]='--strict --help --version'
        [export]='--csv --help --version'
        [replay]='--port --settings --reconnect --log --capture --overwrite --within --timeout --json
            --quiet --speed --in-step --channel --help --version'
    )
    case $prev in
        --speed) COMPREPLY=($(compgen -W '1 10 max' -- "$cur")) ;;
        --channel) COMPREPLY=($(compgen -W '1 2' -- "$cur")) ;;
        --port) COMPREPLY=($(compgen -S = -W '{1..8}' -- "$cur")) && compopt -o nospace ;;
        --settings | --within | --timeout) ;;
        *)
            if [[ $cur == -* ]]; then
                COMPREPLY=($(compgen -W "${options[$1]}" -- "$cur"))
            else
                _filedir
            fi
            ;;
    esac
}

_serimonde_cli() {
    local cur prev words cword
    _init_completion -n = || return

    case ${words[1]} in
        judge | export | replay)
            if ((cword > 1)); then
                _serimonde_cli_command "${words[1]}"
                return
            fi
            ;;
    esac

    local option=$prev value=$cur
    if [[ $cur == --*=* ]]; then
        option=${cur%%=*} value=${cur#*=}
    fi
    # Bash completes what stands behind the last "=".
    local behind=${value##*=}

    case $option in
        --port)
            if [[ $value == *=* ]]; then
                COMPREPLY=($(compgen -W "$(_serimonde_cli_devices)" -- "$behind"))
            else
                COMPREPLY=($(compgen -S = -W '{1..8}' -- "$behind"))
                compopt -o nospace
            fi
            ;;
        --mode)
            COMPREPLY=($(compgen -W '0 1 2' -- "$behind"))
            ;;
        --settings)
            COMPREPLY=($(compgen -W '{9600,19200,38400,57600,115200},N,8,1' -- "$behind"))
            ;;
        --log | --capture | --steps | --junit)
            cur=$behind
            _filedir
            ;;
        --within | --timeout | --help | --version) ;;
        *)
            if [[ $cur == -* ]]; then
                COMPREPLY=($(compgen -W '--port --mode --settings --reconnect --log --capture
                    --overwrite --steps --within --timeout --junit --json --commands --quiet --demo
                    --help --version' -- "$cur"))
            else
                COMPREPLY=($(compgen -W 'send send-hex send-text expect forbid allow quiet wait rts
                    dtr break close open repeat end group judge export replay' -- "$cur"))
                _filedir sqx
            fi
            ;;
    esac
} && complete -F _serimonde_cli serimonde-cli
