# SPDX-FileCopyrightText: 2026 The velmora-share developers
#
# SPDX-License-Identifier: MIT

# bash completion for velmora-share

_velmora_share() {
    local cur prev words cword
    _init_completion || return

    case $prev in
        --image | --screenshot)
            _filedir
            return
            ;;
        --container)
            _filedir -d
            return
            ;;
        --title | --text | --bundle-id | --from | --to | --cc | --bcc | --subject | --body)
            return
            ;;
    esac

    if [[ $cur == -* ]]; then
        COMPREPLY=($(compgen -W '--title --text --image --container --bundle-id --headless
            --from --to --cc --bcc --subject --body --cancel --print-url --screenshot --help --version' \
            -- "$cur"))
        return
    fi
    _filedir
}
complete -F _velmora_share velmora-share
