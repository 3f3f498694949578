#!/usr/bin/env bash
# Renders a project on machines that ssh reaches, with GNU parallel:
#   parallel.sh PROJECT OUT.mp4 PARTS [OPTION OF EDIT…]
#   PARALLEL="--sshlogin 8/anna,16/otto" parallel.sh trailer.json trailer.mp4 24 --crf 16
# Here without --sshlogin; 8/ is for cores that it may use, all of them without. PROJECT, its clips and OUT lie where every
# machine finds them by the same name. Say it again to go on where something failed.
set -euo pipefail
project=$(realpath "$1") out=$(realpath "$2") parts=$3
shift 3
folder=${out%.*}.parts

told=$(qvfilter edit "$project" --split "$parts" -o "$folder" --yes --quiet "$@")  # "25 parts: …"
count=${told%% *}

# A service or a scheduled job may have no SHELL; GNU parallel then runs nothing and reports success.
export PARALLEL_SHELL=$BASH

# Backwards: the sound is the last part and the longest. A part that fails is tried on another machine. No --resume: the tool
# itself knows which parts are whole and of this plan.
# --memfree waits for room, and takes the youngest part back where less than half of it is left.
seq $((count - 1)) -1 0 | parallel --quote --jobs 25% --retries 4 --memfree 1G --joblog "$folder/joblog.txt" \
    qvfilter edit "$project" --span '{}' -o "$folder" --threads 4 --quiet

qvfilter join "$folder" -o "$out" --yes --quiet
