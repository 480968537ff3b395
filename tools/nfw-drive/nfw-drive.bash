# Completion of nfw-drive for bash.
_nfw_drive() {
  local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD - 1]} options
  [[ $cur == "=" ]] && cur=""  # behind NAME
  case "$prev" in
    --format) mapfile -t COMPREPLY < <(compgen -W "live lines json jsonl-raw nmea none" -- "$cur"); return ;;
    --log-level) mapfile -t COMPREPLY < <(compgen -W "0 1 2 3 4 5" -- "$cur"); return ;;
    --speed) mapfile -t COMPREPLY < <(compgen -W "1 2 5 10 max" -- "$cur"); return ;;
    --baud) mapfile -t COMPREPLY < <(compgen -W "4800 9600 19200 38400 57600 115200" -- "$cur"); return ;;
    --max-file-time | --sync-interval) mapfile -t COMPREPLY < <(compgen -W "1s 10s 1m 10m 1h" -- "$cur"); return ;;
    --serve) mapfile -t COMPREPLY < <(compgen -W "tcp://:10110 udp://:10110 pty:" -- "$cur"); return ;;
    --systems) mapfile -t COMPREPLY < <(compgen -W "gps gps,glonass gps,glonass,galileo" -- "$cur"); return ;;
    --record | --backup) mapfile -t COMPREPLY < <(compgen -d -- "$cur"); return ;;
    --replay | --sys-replay | --sys-record | --settings) mapfile -t COMPREPLY < <(compgen -f -- "$cur"); return ;;
    --for | --silence | --seed | --rate | --tunnel | --record-on | --prefix | --max-file-size | --buffer-size | \
      --keep-total | --keep-files | --keep-age | --keep-free | --keep-before | --from | --to) return ;;
  esac
  if [[ $cur == -* ]]; then
    options="--help --version --speed --for --format --serve --log-level --no-checksum --baud --silence --wait --seed --rate --systems"
    options+=" --tunnel --dr --record --record-on --prefix --backup --sys-record --max-file-size --buffer-size --replay"
    options+=" --sys-replay --from --to --paused --loop --max-file-time --max-file-time-aligned --sync-interval"
    options+=" --keep-total --keep-files --keep-age --keep-free --keep-before --settings"
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$cur")
  else
    mapfile -t COMPREPLY < <(compgen -W "sim" -- "$cur"; compgen -f -- "$cur")
  fi
}
complete -o filenames -o default -F _nfw_drive nfw-drive
