# bash completion for corvalence-fit

_corvalence_fit() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    # readline splits --output=x into three words.
    if [[ $previous == "=" ]]; then
        previous=${COMP_WORDS[COMP_CWORD - 2]}
    elif [[ $current == "=" ]]; then
        current=
    fi
    COMPREPLY=()

    local suffixes="csv|tsv|txt|xml|json"
    case $previous in
        -o | --output | --style | --into | --check)
            suffixes=gauge
            ;;
        --table)
            suffixes="json|xml|h"
            ;;
        --report)
            mapfile -t COMPREPLY < <(compgen -W "text json" -- "$current")
            return
            ;;
        --map | --max-error | --labels | --step | --minor | --subminor | --decimals | --replace | --range | \
            --range-radius | --range-width | --layers)
            return
            ;;
        *)
            if [[ $current == -* ]]; then
                mapfile -t COMPREPLY < <(compgen -W "--output --overwrite --keep --table --report --map
                    --straight --extrapolate --max-error --labels --step --minor --subminor --decimals
                    --unsigned --style --into --replace --range --range-radius --range-width --check --layers
                    --help --version" -- "$current")
                return
            fi
            ;;
    esac
    compopt -o filenames
    mapfile -t COMPREPLY < <(compgen -d -- "$current"; shopt -s extglob
        compgen -f -X "!*.@($suffixes)" -- "$current")
}

complete -F _corvalence_fit corvalence-fit
