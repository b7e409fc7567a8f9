# bash completion for zol

# What the schema has behind a path, a step further. Bash breaks words at "@" and completes only what
# stands behind it, so that the beginning must not come back.
_zol_paths() {
  local line=${COMP_LINE:0:${COMP_POINT:-0}} path=$1 kept=''
  [[ -n $line ]] && path=${line##*[[:space:]]} && path=${path#[\'\"]}
  [[ $COMP_WORDBREAKS == *@* && $path == *@* ]] && kept=${path%@*}@
  mapfile -t COMPREPLY < <(zol explain --paths -- "$path" 2>/dev/null)
  COMPREPLY=("${COMPREPLY[@]#"$kept"}")
  compopt -o nospace 2>/dev/null
}

_zol() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  local command='' word options operands=0 i
  COMPREPLY=()
  for ((i = 1; i < COMP_CWORD; ++i)); do
    word=${COMP_WORDS[i]}
    if [[ -n $command ]]; then
      [[ $word == -?* ]] || ((++operands))
      continue
    fi
    case $word in
      validate | info | convert | list | get | set | diff | merge | grep | explain | report | thumbnail | schema | check | compare)
        command=$word
        ;;
    esac
  done

  case $command in
    validate) options='--first --max --lint --strict --json --sarif --recursive --jobs --resume --quiet --brief --color --help' ;;
    info) options='--json --recursive --help' ;;
    convert) options='--force --rewrite --exact --to --from --recursive --jobs --keep-going --resume --wide --space --separator --decimal-comma --mapping --illuminant --observer --help' ;;
    list) options='--csv --recursive --illuminant --observer --help' ;;
    get) options='--json --null --recursive --jobs --help' ;;
    set) options='--delete --output --in-place --force --recursive --jobs --help' ;;
    diff) options='--json --brief --ignore --formula --recursive --jobs --help' ;;
    merge) options='--output --force --on-conflict --quiet --recursive --jobs --help' ;;
    grep) options='--path --where --ignore-case --list --count --json --recursive --jobs --resume --help' ;;
    explain) options='--paths --help' ;;
    report) options='--output --svg --illuminant --observer --help' ;;
    thumbnail) options='--size --help' ;;
    schema) options='--json --help' ;;
    check) options='--json --csv --warn-as-fail --unjudged-as-fail --fill --output --force --recursive --jobs --resume --help' ;;
    compare) options='--formula --factors --illuminant --observer --adapt --json --csv --help' ;;
    *) options='validate info convert list get set diff merge grep explain report thumbnail schema check compare --version --help' ;;
  esac
  if [[ -z $command || $current == -?* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
    return
  fi
  case $command$previous in
    set--delete) _zol_paths "$current"; return ;;
    validate--color) options='auto always never' ;;
    merge--on-conflict) options='keep rename fail' ;;
    diff--formula | compare--formula) options='76 94 2000 cmc din99 hunter fmc2' ;;
    convert--to) options='zol zolz json csv tsv cgats gpl kpl css ase sqlite' ;;
    convert--from) options='zol json csv tsv cgats gpl kpl ase' ;;
    convert--space) options='CIELab CIELCh CIEXYZ CIExyY CIELuv Spectral SRGB RGB CMYK Density' ;;
    list--illuminant | report--illuminant | compare--illuminant | convert--illuminant)
      options='A B C D50 D55 D65 D75 E F2 F3 F7 F11 F12 9300'
      ;;
    list--observer | report--observer | compare--observer | convert--observer) options='2 10' ;;
    report--svg) options='hues lightness spectra sources swatch: spectrum:' ;;
    schema* | *--max | *--size | thumbnail-s | *--jobs | *-j | grep--path | grep--where | diff--ignore) return ;;
    *) options='' ;;
  esac
  if [[ -n $options ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
    return
  fi
  case $command in
    explain) _zol_paths "$current"; return ;;
    get | set) ((operands == 0)) || { _zol_paths "$current"; return; } ;;
    grep) ((operands == 0)) && return ;;
  esac
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
