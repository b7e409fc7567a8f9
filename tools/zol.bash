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
    validate) options='--first --max --lint --json --sarif --recursive --jobs --quiet --brief --color --help' ;;
    info) options='--json --recursive --help' ;;
    convert) options='--force --rewrite --exact --help' ;;
    list) options='--csv --recursive --help' ;;
    schema) options='--help' ;;
    *) options='validate info convert list schema --version --help' ;;
  esac
  if [[ -z $command || $current == -?* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
    return
  fi
  if [[ $command == validate && $previous == --color ]]; then
    mapfile -t COMPREPLY < <(compgen -W 'auto always never' -- "$current")
    return
  fi
  [[ $command == schema || ($command == validate && $previous == @(--max|--jobs|-j)) ]] && return
  compopt -o filenames 2>/dev/null
  mapfile -t COMPREPLY < <(compgen -d -- "$current"
                           compgen -f -X '!*.[zZ][oO][lL]' -- "$current"
                           compgen -f -X '!*.[zZ][oO][lL][zZ]' -- "$current")
}

complete -F _zol zol
