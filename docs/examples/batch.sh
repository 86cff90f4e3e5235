#!/bin/sh
# batch.sh LIST [PLACES]: answers a long list of questions, one a line as one
# would type it behind `attenuate`, on all cores of all PLACES at once.
#
# PLACES is a comma-separated list as --sshlogin of GNU parallel takes it: ":"
# is this machine (the default), "2/mars" two cores of mars, where `attenuate`
# must be installed and ssh must ask for no password. The list stays here: each
# place gets pieces of it, and a piece that fails is given once more, to whoever
# is free. Answers come in the order of the list.
set -eu
list=$1
places=${2:-:}

parallel --no-notice --pipepart --arg-file "$list" --block 1M --keep-order \
  --retries 3 --sshlogin "$places" "${ATTENUATE:-attenuate} --batch - --jsonl"
