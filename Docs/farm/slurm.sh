#!/usr/bin/env bash
# Renders a project on a Slurm cluster:
#   slurm.sh PROJECT OUT.mp4 PARTS [OPTION OF EDIT…]
#   cores=4 memory=4G SBATCH_PARTITION=film slurm.sh trailer.json trailer.mp4 24 --crf 16
# PROJECT, its clips and OUT lie where every node finds them by the same name. Say it again to go on where something failed.
set -euo pipefail
project=$(realpath "$1") out=$(realpath "$2") parts=$3
shift 3
folder=${out%.*}.parts
export project out folder

told=$(qvfilter edit "$project" --split "$parts" -o "$folder" --yes --quiet "$@")  # "25 parts: …"
export last=$((${told%% *} - 1))

# Backwards: the sound is the last part and the longest. A node that is lost sends its part back to the queue by --requeue; a part
# that fails goes there itself, three times.
job=$(sbatch --parsable --job-name=film-part --array="0-$last" --requeue --cpus-per-task="${cores:-2}" \
    --mem="${memory:-2G}" --open-mode=append --output="$folder/log_task_%a.txt" <<'PART'
#!/bin/bash
qvfilter edit "$project" --span "$((last - SLURM_ARRAY_TASK_ID))" -o "$folder" --threads "$SLURM_CPUS_PER_TASK" --quiet && exit
[ "${SLURM_RESTART_COUNT:-0}" -ge 3 ] || scontrol requeue "$SLURM_JOB_ID"
exit 1
PART
)
sbatch --parsable --job-name=film-join --dependency="afterok:$job" --kill-on-invalid-dep=yes --mem=1G \
    --output="$folder/log_join.txt" <<'JOIN'
#!/bin/bash
qvfilter join "$folder" -o "$out" --yes --quiet
JOIN
