#!/usr/bin/env bash
# Runs the Snakemake workflow over fifty generated images, one of them damaged, and compares with a run in one piece.
# Usage: snakemake.sh PROGRAMS SOURCES     status 77: skipped
set -euo pipefail
bin=$1 sources=$2
if ! command -v snakemake >/dev/null; then
    echo "Skipped: snakemake is not installed"
    exit 77
fi
. "$sources/tests/workflow/images.sh"
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"
export HOME=$folder XDG_CACHE_HOME=$folder/cache
make_images
run_in_one_piece
sed -e "s|^images:.*|images: \"images/*.ome.tif\"|; s|^out:.*|out: \"results/r\"|; s|^shards:.*|shards: 5|" \
    -e "s|^batchprofile:.*|batchprofile: \"$bin/batchprofile\"|" "$sources/workflow/config.yaml" >my.yaml
snakemake --snakefile "$sources/workflow/Snakefile" --configfile my.yaml --cores 2 --nolock >log 2>&1 || {
    cat log
    exit 1
}
compare_results results/r
echo "five shards under Snakemake are the run in one piece"
