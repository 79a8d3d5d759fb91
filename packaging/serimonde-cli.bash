# SPDX-FileCopyrightText: The Serimonde developers
# SPDX-License-Identifier: MIT
# shellcheck shell=bash disable=SC2034,SC2207
#
# Completion of the arguments of serimonde-cli in bash.

_serimonde_cli_devices() {
    compgen -G '/dev/serial/by-id/*'
    compgen -G '/dev/tty[SUA]*'
}

# Value OPTION TEXT: what may stand behind an option; fails if nothing does.
_serimonde_cli_value() {
    local behind=${2##*=} # bash completes what stands behind the last "="
    case $1 in
        --port)
            if [[ $2 == *=* ]]; then
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
        --speed)
            COMPREPLY=($(compgen -W '1 10 max' -- "$behind"))
            ;;
        --channel)
            COMPREPLY=($(compgen -W '1 2' -- "$behind"))
            ;;
        --log | --capture | --steps | --junit)
            cur=$behind
            _filedir
            ;;
        --within | --timeout | --help | --version) ;;
        *) return 1 ;;
    esac
}

_serimonde_cli() {
    local cur prev words cword
    _init_completion -n = || return

    local option=$prev value=$cur
    if [[ $cur == --*=* ]]; then
        option=${cur%%=*} value=${cur#*=}
    fi
    _serimonde_cli_value "$option" "$value" && return

    # Commands work on a capture, or examine a device, and have options of their own.
    local -A options=(
        [run]='--port --mode --settings --reconnect --log --capture --overwrite --steps --within
            --timeout --junit --json --commands --quiet --demo --help --version'
        [judge]='--strict --help --version'
        [export]='--csv --help --version'
        [replay]='--port --settings --reconnect --log --capture --overwrite --within --timeout --json
            --quiet --speed --in-step --channel --help --version'
        [doctor]='--port --settings --try --help --version'
    )
    local command=run
    case ${words[1]} in
        judge | export | replay | doctor) ((cword > 1)) && command=${words[1]} ;;
    esac
    if [[ $cur == -* ]]; then
        COMPREPLY=($(compgen -W "${options[$command]}" -- "$cur"))
    elif [[ $command == doctor ]]; then
        COMPREPLY=($(compgen -W "$(_serimonde_cli_devices)" -- "$cur"))
    elif [[ $command != run ]]; then
        _filedir '@(sqx|pcapng|pcap)'
    else
        COMPREPLY=($(compgen -W 'send send-hex send-text expect forbid allow quiet wait rts dtr break
            close open repeat end group judge export replay doctor' -- "$cur"))
        _filedir sqx
    fi
} && complete -F _serimonde_cli serimonde-cli
