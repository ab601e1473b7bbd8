# Completion of the zel command for bash.
_zel() {
    local word=${COMP_WORDS[COMP_CWORD]} command= i
    for ((i = 1; i < COMP_CWORD; i++)); do
        if [[ ${COMP_WORDS[i]} != -* ]]; then
            command=${COMP_WORDS[i]}
            break
        fi
    done
    local options
    case $command in
        check) options='-q --quiet --strict -r --recursive -h --help' ;;
        info) options='-s --summary --json -r --recursive -h --help' ;;
        format) options='-i --in-place --force -r --recursive -h --help' ;;
        edit) options='-q --quiet --rewrite -r --recursive -h --help' ;;
        convert) options='--to --tolerance --about -h --help' ;;
        *)
            mapfile -t COMPREPLY < <(compgen -W 'check info format edit convert -h --help --version' -- "$word")
            return
            ;;
    esac
    if [[ $word == -?* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word")
    else
        compopt -o filenames 2> /dev/null
        mapfile -t COMPREPLY < <(
            compgen -d -- "$word"
            if [[ $command == convert ]]; then
                compgen -f -X '!*.@(zel|geojson|kml|kmz|gpx|csv|gpkg|shp)' -- "$word"
            else
                compgen -f -X '!*.[zZ][eE][lL]' -- "$word"
            fi
        )
    fi
}
complete -F _zel zel
