# SPDX-FileCopyrightText: The Serimonde developers
# SPDX-License-Identifier: MIT
# shellcheck shell=bash disable=SC2034,SC2207
#
# Completion of the arguments of serimonde in bash.

_serimonde_devices() {
    compgen -G '/dev/serial/by-id/*'
    compgen -G '/dev/tty[SUA]*'
}

_serimonde() {
    local cur prev words cword
    _init_completion -n = || return

    local option=$prev value=$cur
    if [[ $cur == --*=* ]]; then
        option=${cur%%=*} value=${cur#*=}
    fi
    # Bash completes what stands behind the last "=".
    local behind=${value##*=}

    case $option in
        --port)
            if [[ $value == *=* ]]; then
                COMPREPLY=($(compgen -W "$(_serimonde_devices)" -- "$behind"))
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
        --log | --capture | --screenshot)
            cur=$behind
            _filedir
            ;;
        --quit-after | --help | --version) ;;
        *)
            if [[ $cur == -* ]]; then
                COMPREPLY=($(compgen -W '--port --mode --settings --start --reconnect --log
                    --capture --overwrite --quit-after --screenshot --demo --reset-settings --doctor
                    --try --help --version' -- "$cur"))
            elif [[ " ${words[*]} " == *' --doctor '* ]]; then
                COMPREPLY=($(compgen -W "$(_serimonde_devices)" -- "$cur"))
            else
                _filedir '@(sqx|pcapng|pcap)'
            fi
            ;;
    esac
} && complete -F _serimonde serimonde
