# bash completion for zol

_zol() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  local command='' word options
  COMPREPLY=()
  for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
    case $word in
      validate | info | convert | list | report | schema | check | compare) command=$word; break ;;
    esac
  done

  case $command in
    validate) options='--first --max --lint --strict --json --sarif --recursive --jobs --quiet --brief --color --help' ;;
    info) options='--json --recursive --help' ;;
    convert) options='--force --rewrite --exact --to --from --recursive --wide --space --separator --decimal-comma --mapping --illuminant --observer --help' ;;
    list) options='--csv --recursive --illuminant --observer --help' ;;
    report) options='--output --svg --illuminant --observer --help' ;;
    schema) options='--json --help' ;;
    check) options='--json --csv --warn-as-fail --unjudged-as-fail --fill --output --force --help' ;;
    compare) options='--formula --factors --illuminant --observer --adapt --json --csv --help' ;;
    *) options='validate info convert list report schema check compare --version --help' ;;
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
  if [[ $command == @(compare|convert|list|report) ]]; then
    case $previous in
      --to) options='zol json csv tsv cgats gpl kpl css ase sqlite' ;;
      --from) options='zol json csv tsv cgats gpl kpl ase' ;;
      --space) options='CIELab CIELCh CIEXYZ CIExyY CIELuv Spectral SRGB RGB CMYK Density' ;;
      --formula) options='76 94 2000 cmc din99 hunter fmc2' ;;
      --illuminant) options='A B C D50 D55 D65 D75 E F2 F3 F7 F11 F12 9300' ;;
      --observer) options='2 10' ;;
      --svg) options='hues lightness spectra sources swatch: spectrum:' ;;
      *) options='' ;;
    esac
    if [[ -n $options ]]; then
      mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
      return
    fi
  fi
  compopt -o filenames 2>/dev/null
  if [[ $command == convert ]]; then
    mapfile -t COMPREPLY < <(compgen -f -- "$current")
    return
  fi
  mapfile -t COMPREPLY < <(compgen -d -- "$current"
                           compgen -f -X '!*.[zZ][oO][lL]' -- "$current"
                           compgen -f -X '!*.[zZ][oO][lL][zZ]' -- "$current")
}

complete -F _zol zol
