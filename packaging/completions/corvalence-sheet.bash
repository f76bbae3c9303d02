# bash completion for corvalence-sheet

_corvalence_sheet() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    # readline splits --paper=A4 into three words.
    if [[ $previous == "=" ]]; then
        previous=${COMP_WORDS[COMP_CWORD - 2]}
    elif [[ $current == "=" ]]; then
        current=
    fi
    COMPREPLY=()

    case $previous in
        -o | --output)
            compopt -o filenames
            mapfile -t COMPREPLY < <(compgen -f -- "$current")
            return
            ;;
        -p | --paper)
            mapfile -t COMPREPLY < <(compgen -W "A3 A4 A5 Letter Legal Tabloid" -- "$current")
            return
            ;;
        --mm-of)
            mapfile -t COMPREPLY < <(compgen -W "rim canvas" -- "$current")
            return
            ;;
        --fonts)
            mapfile -t COMPREPLY < <(compgen -W "paths embed" -- "$current")
            return
            ;;
        --margins | --gap | --mm | --drill | --hole | --columns | --tick-limit | --input-limit)
            return
            ;;
    esac

    if [[ $current == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "--output --paper --landscape --margins --gap --mm --mm-of --cut-circles
            --cut-marks --centre-cross --drill --hole --mirror --caption --contact --columns --fonts --overwrite --keep
            --dry-run --quiet --tick-limit --input-limit --help --version" -- "$current")
        return
    fi
    compopt -o filenames
    mapfile -t COMPREPLY < <(compgen -d -- "$current"; compgen -f -X '!*.gauge' -- "$current")
}

complete -F _corvalence_sheet corvalence-sheet
