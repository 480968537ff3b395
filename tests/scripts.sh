#!/bin/bash
# Every script tells what it takes, from wherever it is called, and takes nothing else.
cd / || exit 1
ROOT=${1:?the folder of the project}
FAILED=0

expect() {  # SCRIPT STATUS TEXT ARGUMENT...: the output has the text
  local script=$1 status=$2 text=$3 output result
  shift 3
  output=$(timeout 20 "$script" "$@" 2>&1 </dev/null)
  result=$?
  if [ "$result" -ne "$status" ] || [[ $output != *"$text"* ]]; then
    printf '%s %s: status %d instead of %d, "%s"\n' "$script" "$*" "$result" "$status" "${output:0:300}"
    FAILED=1
  fi
}

for script in "$ROOT"/scripts/* "$ROOT"/bench/* "$ROOT"/.ci/*; do
  [ -f "$script" ] && [ -x "$script" ] || continue
  purpose=$(sed -n '2s/^[#"]* *//p' "$script")
  expect "$script" 0 "${purpose:0:20}" --help
  expect "$script" 0 "${purpose:0:20}" -h
  expect "$script" 2 "--no-such" --no-such
done
expect "$ROOT/.ci/run" 2 "nosuch" docs nosuch
expect "$ROOT/scripts/fuzz" 2 "NoSuchFuzz" 30 NoSuchFuzz
expect "$ROOT/scripts/fuzz" 2 "0" 0
expect "$ROOT/scripts/setup" 2 "nosuch" build nosuch
expect "$ROOT/scripts/test" 2 "arm" dev arm
exit "$FAILED"
