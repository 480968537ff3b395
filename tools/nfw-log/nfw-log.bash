# Completion of nfw-log for bash.
_nfw_log() {
  local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD - 1]}
  local commands="info cat check recover cut filter merge convert plot prune" command="" word
  for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
    case " $commands " in *" $word "*) command=$word && break ;; esac
  done
  if [ -z "$command" ]; then
    mapfile -t COMPREPLY < <(compgen -W "$commands --help --version" -- "$cur")
    return
  fi
  case "$prev" in
    --to) [ "$command" != convert ] || { mapfile -t COMPREPLY < <(compgen -W "nmea gpx kml geojson csv" -- "$cur"); return; } ;;
    --colour) mapfile -t COMPREPLY < <(compgen -W "speed fix" -- "$cur"); return ;;
    --type) mapfile -t COMPREPLY < <(compgen -W "GGA GLL GSA GSV RMC VTG ZDA PUBX DR LOG DATA" -- "$cur"); return ;;
  esac
  if [[ $cur == -* ]]; then
    local selection="--id --type --from --to --until" output="-o --output --force" options=""
    case "$command" in
      info) options="--json --gap" ;;
      cat) options="$selection $output --json --hex --follow" ;;
      check) options="--json" ;;
      recover) options="$output" ;;
      cut | filter) options="$selection $output" ;;
      merge) options="$selection $output --by-time" ;;
      convert) options="$selection $output" ;;
      plot) options="$selection $output --html --colour" ;;
      prune) options="--keep-total --keep-files --keep-age --keep-free --prefix --dry-run" ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$options --help" -- "$cur")
  fi
}
complete -o default -o bashdefault -F _nfw_log nfw-log
