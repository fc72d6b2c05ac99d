#!/usr/bin/env bash
# Starts munge and Slurm on this one machine, submits the array of workflow/batchprofile.slurm, kills one task and requeues
# it, merges, and compares with a run in one piece.
# Usage: slurm.sh PROGRAMS SOURCES     status 77: skipped
set -euo pipefail
bin=$1 sources=$2
for program in munged slurmctld slurmd sbatch squeue scontrol; do
    if ! PATH=$PATH:/usr/sbin command -v $program >/dev/null; then
        echo "Skipped: $program is not installed (packages slurm-wlm and munge)"
        exit 77
    fi
done
if [ "$(id -u)" -ne 0 ]; then
    echo "Skipped: slurmd needs root"
    exit 77
fi
PATH=$PATH:/usr/sbin
. "$sources/tests/workflow/images.sh"
folder=$(mktemp -d)
chmod 755 "$folder"
started=()
stop() {
    local id
    for id in "${started[@]}"; do kill "$id" 2>/dev/null || true; done
    wait 2>/dev/null || true
    rm -rf "$folder"
}
trap stop EXIT
cd "$folder"

# Waits until the command succeeds, at most a minute.
await() {
    local i
    for i in $(seq 300); do
        "$@" >/dev/null 2>&1 && return 0
        sleep 0.2
    done
    echo "Waited in vain for: $*" >&2
    cat "$folder"/*.log >&2
    return 1
}

port=$((20000 + RANDOM % 20000))
head -c 1024 /dev/urandom >munge.key
chmod 400 munge.key
mkdir -m 755 run state spool
munged --foreground --force --key-file="$folder/munge.key" --socket="$folder/run/munge.socket" \
    --pid-file="$folder/run/munged.pid" --log-file="$folder/run/munged.log" --seed-file="$folder/run/munged.seed" \
    >munged.log 2>&1 &
started+=($!)
await munge --socket="$folder/run/munge.socket" -n
cat >slurm.conf <<EOF
ClusterName=one
SlurmctldHost=$(hostname -s)(127.0.0.1)
SlurmctldPort=$port
SlurmdPort=$((port + 1))
AuthType=auth/munge
AuthInfo=socket=$folder/run/munge.socket
CredType=cred/munge
SlurmUser=root
SlurmdUser=root
StateSaveLocation=$folder/state
SlurmdSpoolDir=$folder/spool
SlurmctldPidFile=$folder/run/slurmctld.pid
SlurmdPidFile=$folder/run/slurmd.pid
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
JobAcctGatherType=jobacct_gather/none
AccountingStorageType=accounting_storage/none
SelectType=select/cons_tres
SelectTypeParameters=CR_CPU
SchedulerParameters=bf_interval=1,sched_interval=1
ReturnToService=2
MpiDefault=none
NodeName=$(hostname -s) NodeAddr=127.0.0.1 CPUs=$(nproc)
PartitionName=all Nodes=ALL Default=YES State=UP
EOF
export SLURM_CONF=$folder/slurm.conf
slurmctld -D >slurmctld.log 2>&1 &
started+=($!)
slurmd -D >slurmd.log 2>&1 &
started+=($!)
await sh -c 'sinfo -h -o %T | grep -qE "idle|mix|alloc"'

make_images
run_in_one_piece
# The second task dies when it begins for the first time, as when a machine goes down.
cat >program <<EOF
#!/bin/bash
if [ "\$SLURM_ARRAY_TASK_ID" = 2 ] && [ ! -e "$folder/killed" ]; then
    touch "$folder/killed"
    scontrol requeue "\${SLURM_ARRAY_JOB_ID}_2"
    kill -KILL \$\$
fi
exec "$bin/batchprofile" "\$@"
EOF
chmod +x program
job=$(BATCHPROFILE=$folder/program sbatch --parsable --array=1-4 --output="$folder/task-%a.log" --chdir="$folder" \
    "$sources/workflow/batchprofile.slurm" r lines.csv images.txt --quiet --samples csv)
# Slurm begins a requeued task after two minutes; the test does not wait for that.
hurried() {
    [ -e killed ] && [ -n "$(squeue -h -j "${job}_2" -t PENDING 2>/dev/null)" ] &&
        scontrol update JobId="${job}_2" StartTime=now
}
await hurried
finished() { [ -z "$(squeue -h -j "$job" 2>/dev/null)" ]; }
await finished
"$bin/batchprofile" merge --quiet --out r || [ $? -eq 2 ] || { cat "$folder"/task-*.log "$folder"/slurmctld.log; exit 1; }
compare_results r
echo "four tasks under Slurm, one killed and requeued, are the run in one piece"
