#!/bin/bash
# Processor time and memory of the program beside those of an empty C program,
# turn by turn in one run: docs/measure.sh [PROGRAM [RUNS [ROUNDS]]]
# Processor time is user and system time of the process; each figure is the
# median over the rounds, with the lowest and the highest behind it.
set -eu
cd "$(dirname "$0")/.."
program=$(readlink -f "${1:-build/release/bin/attenuation}")
runs=${2:-200}
rounds=${3:-15}

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
echo 'int main(void) { return 0; }' > "$work/empty.c"
cc -O2 -o "$work/empty" "$work/empty.c"
# The same, linked with the libraries that the program needs.
cc -O2 -o "$work/libraries" "$work/empty.c" -Wl,--no-as-needed -Wl,-z,now \
  -lstdc++ -lreadline -ltinfo -lm -lgcc_s

# Iron at 14.4 keV with 100 mg/cm2: part of the menu's entry, RET; energy,
# modification, unit and thickness as proposed; no further thickness.
printf 'Iron\n\n\n\n\n\nn\n\n' > "$work/iron"
# The compound of seven components at both lines of 57Co: 14 look-ups.
printf '11\n\n\n\n\n\n\n\nn\n\n' > "$work/two-lines"
export ZOXUHEPATH=$PWD/data
cd data
# What ends early costs little: both must come to their end.
for session in iron two-lines; do
  "$program" < "$work/$session" > /dev/null
done

# Milliseconds of processor time that a run of `$1` on the input `$2` takes.
one_round() {
  # A subshell, so that its children are these runs and nothing else.
  (
    for ((i = 0; i < runs; ++i)); do
      "$1" < "$2" > /dev/null 2>&1 || true
    done
    times
  ) | awk -v runs="$runs" 'NR == 2 {
    gsub(/[ms]/, " ")
    printf "%.3f\n", 1000 * (60 * ($1 + $3) + $2 + $4) / runs
  }'
}

names=(empty libraries start iron two-lines)
for ((round = 0; round < rounds; ++round)); do
  one_round "$work/empty" /dev/null >> "$work/empty.ms"
  one_round "$work/libraries" /dev/null >> "$work/libraries.ms"
  one_round "$program" /dev/null >> "$work/start.ms"
  one_round "$program" "$work/iron" >> "$work/iron.ms"
  one_round "$program" "$work/two-lines" >> "$work/two-lines.ms"
done

peak() { # kilobytes
  /usr/bin/time -f %M -o "$work/peak" "$1" < "$2" > /dev/null 2>&1 || true
  tail -n 1 "$work/peak"
}

echo "$runs runs a round, $rounds rounds; processor time of one run:"
for name in "${names[@]}"; do
  sort -n "$work/$name.ms" | awk -v name="$name" '{ ms[NR] = $1 } END {
    printf "  %-10s %6.2f ms  (%.2f to %.2f)\n",
      name, ms[int((NR + 1) / 2)], ms[1], ms[NR]
  }'
done
echo "peak memory:"
echo "  empty      $(peak "$work/empty" /dev/null) kB"
echo "  libraries  $(peak "$work/libraries" /dev/null) kB"
echo "  start      $(peak "$program" /dev/null) kB"
echo "  iron       $(peak "$program" "$work/iron") kB"
echo "  two-lines  $(peak "$program" "$work/two-lines") kB"
