#!/bin/sh
# Solves the example collection two problems at a time and checks the output:
# the same text as solving each problem on its own with solve --fen, and the
# published keys in file order (a golden list of headers and key lines).
# Usage: batch_check.sh VELKARO_CLI EXAMPLES_DIR KEYS_FILE WORK_DIR
set -eu
cli=$1
examples=$2
keys=$3
work=$4
mkdir -p "$work"
cd "$examples"
"$cli" solve --file collection.fen --jobs 2 > "$work/batch.txt" 2> "$work/batch.err"
grep '^== ' "$work/batch.txt" | while read -r mark where placement side castling ep stip; do
  echo "$mark $where $placement $side $castling $ep $stip"
  "$cli" solve --fen "$placement $side $castling $ep" --stip "$stip" 2> /dev/null
  echo
done > "$work/single.txt"
cmp "$work/batch.txt" "$work/single.txt"
grep -A1 -E '^(== | *Solution No )' "$work/batch.txt" | grep -vE '^( *Solution No |--$)' | diff "$keys" -
