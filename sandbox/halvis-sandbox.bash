# Completion of the halvis-sandbox command for bash.
_halvis_sandbox() {
    local word=${COMP_WORDS[COMP_CWORD]} option=${COMP_WORDS[COMP_CWORD - 1]} files= words= known
    known='--plugin --settings --script --size --palette --verbose --trace --render -h --help --help-all -v --version'
    [[ " ${COMP_WORDS[*]} " != *' --render '* ]] ||
        known='--render -o --output --size --density --view --time --background --map -h --help --help-all -v --version'
    case $option in
        --plugin) files='!*.so' words=none ;;
        --script) files='!*.js' ;;
        --settings | --trace) files= ;;
        -o | --output) files='!*.@(png|svg)' ;;
        --palette) words='light dark system' ;;
        --background) files='!*.@(jpg|png)' words='earth plain none' ;;
        --map) words='graticule coast borders land names scale' ;;
        --size | --density | --view | --time) return ;;
        *)
            files='!*.@([zZ][eE][lL]|[cC][sS][vV])'
            [[ $word != -* ]] || words=$known
            ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
    [[ $option != --palette && $option != --map && $word != -* ]] || return
    compopt -o filenames 2> /dev/null
    mapfile -t -O ${#COMPREPLY[@]} COMPREPLY < <(
        shopt -s extglob
        compgen -d -- "$word"
        compgen -f -X "$files" -- "$word"
    )
}
complete -F _halvis_sandbox halvis-sandbox
