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
    --to) [ "$command" != convert ] || { mapfile -t COMPREPLY < <(compgen -W "nmea gpx kml geojson csv gpkg mcap" -- "$cur"); return; } ;;
    --colour) mapfile -t COMPREPLY < <(compgen -W "speed fix" -- "$cur"); return ;;
    --type | --exclude) mapfile -t COMPREPLY < <(compgen -W "GGA GLL GSA GSV RMC VTG ZDA PUBX DR LOG DATA" -- "$cur"); return ;;
  esac
  if [[ $cur == -* ]]; then
    local selection="--id --type --exclude --match --from --to --until" output="-o --output --force" options=""
    case "$command" in
      info) options="--json --gap" ;;
      cat) options="$selection --last $output --json --hex --follow --sort" ;;
      check) options="--json" ;;
      recover) options="$output" ;;
      cut) options="$selection --last $output" ;;
      filter) options="$selection --last $output --sort" ;;
      merge) options="$selection $output --by-time" ;;
      convert) options="$selection --last $output --sort --to --name --lines --append" ;;
      plot) options="$selection --last $output --html --colour" ;;
      prune) options="--keep-total --keep-files --keep-age --keep-free --prefix --dry-run" ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$options --help" -- "$cur")
  fi
}
complete -o default -o bashdefault -F _nfw_log nfw-log
