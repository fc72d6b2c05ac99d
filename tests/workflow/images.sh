# Makes fifty images, one of them damaged, and lines, in the present folder; sourced by the tests of the workflows.
# $bin: where the programs are.
make_images() {
    mkdir images
    local i
    for i in $(seq -w 1 50); do
        "$bin/makesample" --size 64x48 --channels 2 --z 2 --time 1 --seed "1$i" "images/$i.ome.tif"
    done
    head -c 900 images/17.ome.tif >images/cut && mv images/cut images/17.ome.tif
    printf 'name,x0_px,y0_px,x1_px,y1_px\nacross,2,3,60,40\nup,30,45,31,2\nout,1,1,90,9\n' >lines.csv
    ls images/*.ome.tif >images.txt
}

# The run in one piece, to compare with. Status 2: the damaged image and the line that leaves the images.
run_in_one_piece() {
    local status=0
    "$bin/batchprofile" --quiet --lines lines.csv --images images.txt --samples csv --out whole || status=$?
    [ $status -eq 2 ]
}

# Whether the results that begin with $1 are those of the run in one piece.
compare_results() {
    local ending
    for ending in summary samples errors; do
        cmp "whole.$ending.csv" "$1.$ending.csv" || return 1
    done
    [ "$(grep -c '^images/17' whole.errors.csv)" -eq 1 ]
    [ "$(wc -l <whole.summary.csv)" -eq $((1 + 49 * 2 * 2 * 2)) ]
}
