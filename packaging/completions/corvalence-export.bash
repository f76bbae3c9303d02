# bash completion for corvalence-export

_corvalence_export() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    # readline splits --formats=png into three words.
    if [[ $previous == "=" ]]; then
        previous=${COMP_WORDS[COMP_CWORD - 2]}
    elif [[ $current == "=" ]]; then
        current=
    fi
    COMPREPLY=()

    case $previous in
        -f | --formats)
            # Complete the part after the last comma and keep the text before it.
            local chosen=
            [[ $current == *,* ]] && chosen=${current%,*},
            mapfile -t COMPREPLY < <(compgen -P "$chosen" -W "png jpeg webp svg pdf csv gauge json xml h html rgb565 c" -- "${current##*,}")
            return
            ;;
        -o | --output)
            compopt -o filenames
            mapfile -t COMPREPLY < <(compgen -d -- "$current")
            return
            ;;
        --to)
            compopt -o filenames
            mapfile -t COMPREPLY < <(compgen -f -- "$current")
            return
            ;;
        -s | --size)
            mapfile -t COMPREPLY < <(compgen -W "256 512 1024 2048 4096" -- "$current")
            return
            ;;
        -n | --name-template)
            mapfile -t COMPREPLY < <(compgen -W "{name} {name}-{size} {size}/{name}" -- "$current")
            return
            ;;
        -b | --background)
            mapfile -t COMPREPLY < <(compgen -W "white black transparent" -- "$current")
            return
            ;;
        --byte-order)
            mapfile -t COMPREPLY < <(compgen -W "little big" -- "$current")
            return
            ;;
        --compression)
            mapfile -t COMPREPLY < <(compgen -W "0 1 2 3 4 5 6 7 8 9" -- "$current")
            return
            ;;
        -l | --layers | --quality | --split | --needle-angle | --scale | --max-error | --mm | --dpi | -j | --jobs | --tick-limit | --input-limit)
            return
            ;;
    esac

    if [[ $current == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "--formats --output --to --size --name-template --layers --split
            --needle-angle --scale --max-error --text-as-paths --mm --dpi --background --quality --byte-order --no-crop --compression --jobs --overwrite --keep --dry-run --quiet --tick-limit --input-limit --help --version" -- "$current")
        return
    fi
    compopt -o filenames
    mapfile -t COMPREPLY < <(compgen -d -- "$current"; compgen -f -X '!*.gauge' -- "$current")
}

complete -F _corvalence_export corvalence-export
