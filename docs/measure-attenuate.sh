#!/bin/bash
# What attenuate takes, beside an empty C program, turn by turn in one run:
# docs/measure-attenuate.sh [PROGRAM [RUNS [ROUNDS]]]
# Processor time is user and system time of the process; each figure is the
# median over the rounds, with the lowest and the highest behind it. Rates count
# processor time too.
set -eu
cd "$(dirname "$0")/.."
program=$(readlink -f "${1:-build/release/bin/attenuate}")
runs=${2:-200}
rounds=${3:-9}

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
echo 'int main(void) { return 0; }' > empty.c
cc -O2 -o empty empty.c

# Milliseconds of processor time that a run of the command takes.
time_of() { # NAME COMMAND...
  local name=$1
  shift
  # A subshell, so that its children are these runs and nothing else.
  (
    for ((i = 0; i < runs; ++i)); do "$@" > /dev/null; done
    times
  ) | awk -v runs="$runs" 'NR == 2 {
    gsub(/[ms]/, " ")
    printf "%.3f\n", 1000 * (60 * ($1 + $3) + $2 + $4) / runs
  }' >> "$name.ms"
}

median() { # NAME
  sort -n "$1.ms" | awk -v name="$1" '{ ms[NR] = $1 } END {
    printf "  %-10s %7.3f ms  (%.3f to %.3f)\n",
      name, ms[int((NR + 1) / 2)], ms[1], ms[NR]
  }'
}

for ((round = 0; round < rounds; ++round)); do
  time_of empty ./empty
  time_of element "$program" Fe 25um 14.41
  time_of formula "$program" 'Na2[Fe(CN)5NO].2H2O@1.72' 50mg/cm2 14.41
  time_of name "$program" kapton 50um 14.41
  time_of source "$program" Fe 25um 57Co
  time_of json "$program" Fe 25um 14.41 --json
done
echo "$runs runs a round, $rounds rounds; processor time of one answer:"
for name in empty element formula name source json; do median "$name"; done

awk 'BEGIN { for (i = 0; i < 1000000; ++i)
  printf "Fe2O3 %dmg/cm2 %.2f\n", 1 + i % 100, 8 + i % 5000 / 100 }' > repeated
awk 'BEGIN { for (i = 0; i < 1000000; ++i)
  printf "Fe%.4fNi%.4fO2 %dmg/cm2 14.41\n", 1 + i / 1000000,
    2 - i / 1000000, 1 + i % 100 }' > new

rate() { # WHAT COUNT COMMAND...
  local what=$1 count=$2
  shift 2
  /usr/bin/time -f '%U %S %M' -o used "$@" > /dev/null
  tail -n 1 used | awk -v what="$what" -v count="$count" '{
    printf "  %-34s %6.2f s  %9.0f /s  %6d kB\n",
      what, $1 + $2, count / ($1 + $2), $3
  }'
}
echo "lists and ranges of a million (processor time, rate, peak memory):"
for format in tsv csv jsonl json; do
  rate "one formula, $format" 1000000 "$program" --batch repeated "--$format"
done
rate "a new formula each line, tsv" 1000000 "$program" --batch new --tsv
rate "range, tsv" 1000001 "$program" Fe 25um 8:28:0.00002 --tsv
rate "range of a compound, tsv" 1000001 \
  "$program" Fe2O3 50mg/cm2 8:28:0.00002 --tsv

peak() { # WHAT COMMAND...
  local what=$1
  shift
  /usr/bin/time -f %M -o used "$@" > /dev/null
  printf '  %-10s %6d kB\n' "$what" "$(tail -n 1 used)"
}
echo "peak memory of one answer:"
peak empty ./empty
peak element "$program" Fe 25um 14.41
peak formula "$program" 'Na2[Fe(CN)5NO].2H2O@1.72' 50mg/cm2 14.41
peak name "$program" kapton 50um 14.41
peak json "$program" Fe 25um 14.41 --json
