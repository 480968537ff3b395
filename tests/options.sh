#!/bin/bash
# The manual page and the completion of each tool know the options that the tool itself knows, no more and no less.
#   tests/options.sh ROOT BIN
ROOT=${1:?the folder of the project}
BIN=${2:?the folder of the tools}
FAILED=0

helped() { "$BIN/$1" "${@:2}" --help | sed -n '/^Options:/,/^$/s/^  \(-[^ ]*\).*/\1/p' | tr ',' '\n' | grep -e --; }
manual() { sed -n 's/\\-/-/g; /^\.B[RI]* .*--/p' "$ROOT/tools/$1/$1.1" | grep -oe '--[a-z][a-z-]*'; }
completed() {  # TOOL WORD...: what is offered behind them for "--"
  COMP_WORDS=("$@" --) COMP_CWORD=$# COMPREPLY=()
  "_${1//-/_}"
  printf '%s\n' "${COMPREPLY[@]}" | grep -e --
}
compare() {  # WHAT WORDS OTHER
  local difference
  difference=$(diff <(sort -u <<<"$2") <(sort -u <<<"$3") | grep '^[<>]') || return 0
  printf '%s differs from --help (<):\n%s\n' "$1" "$difference"
  FAILED=1
}

for tool in nfw-drive nfw-log; do
  # shellcheck source=/dev/null
  . "$ROOT/tools/$tool/$tool.bash"
  all=$(helped "$tool")
  commands=$("$BIN/$tool" --help | sed -n '/^Subcommands:/,/^$/s/^  \([a-z]*\) .*/\1/p')
  compare "the completion of $tool" "$all" "$(completed "$tool")"
  for command in $commands; do
    compare "the completion of $tool $command" "$(helped "$tool" "$command")" "$(completed "$tool" "$command")"
    all+=$'\n'$(helped "$tool" "$command")
  done
  [ "$(wc -w <<<"$all")" -gt 10 ] || { echo "$tool --help tells no options"; FAILED=1; }
  compare "the manual page of $tool" "$all" "$(manual "$tool")"
done
exit "$FAILED"
