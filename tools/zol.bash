# bash completion for zol

_zol() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  local command='' word options
  COMPREPLY=()
  for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
    case $word in
      validate | info | convert | list | schema) command=$word; break ;;
    esac
  done

  case $command in
    validate) options='--first --max --strict --json --quiet --help' ;;
    info) options='--json --help' ;;
    convert) options='--force --rewrite --help' ;;
    list) options='--csv --help' ;;
    schema) options='--help' ;;
    *) options='validate info convert list schema --version --help' ;;
  esac
  if [[ -z $command || $current == -?* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
    return
  fi
  [[ $command == schema || ($command == validate && $previous == --max) ]] && return
  compopt -o filenames 2>/dev/null
  mapfile -t COMPREPLY < <(compgen -d -- "$current"
                           compgen -f -X '!*.zol' -- "$current"
                           compgen -f -X '!*.zolz' -- "$current")
}

complete -F _zol zol
