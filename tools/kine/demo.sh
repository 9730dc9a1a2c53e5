#!/usr/bin/env bash
# kine at work on the reference cells.
#
#   demo.sh KINE PICTURES     the program, and the folder for the pictures
set -euo pipefail
kine=$(realpath "$1")
mkdir -p "$2"
pictures=$(realpath "$2")
cd "$(dirname "$0")/cells"

# Shows the command line as a user would type it, and runs it.
run() {
    local shown="kine"
    local word
    for word in "$@"; do
        case "$word" in
            *" "*) shown+=" \"$word\"" ;;
            *) shown+=" ${word/#"$pictures"\//}" ;;
        esac
    done
    echo "\$ $shown"
    "$kine" "$@"
    echo
}
say() { printf '%s\n\n' "-- $1"; }

say "Every cell, checked: faults of its description, its known poses, the round trip over its joints"
for cell in *.json; do
    echo "\$ kine check $cell"
    "$kine" check "$cell" | grep -E '^(Expectations|Verdict)|^  all ' | sed -n '1,2p;$p'
done
echo

say "Joints to a pose, every solution of a pose, and a robot on a track"
run fk puma.json @nominal
run ik wrist_gravity.json "@first place" --all --quiet
run fk track.json "@level" --in world

say "A jog along the tool, and a tool brought square"
run jog wrist_gravity.json @home --mode tool --move +z --step 25 --repeat 3
run align wrist_gravity.json 10,-25,15,20,-50,30 --to base

say "A tool from six touches, and how far to trust it"
run calib tool wrist_gravity.json --tool gripper --method 5p -i wrist_touches.csv --plot "$pictures/residuals.svg" |
    sed '/^for the cell file/,/^  }$/d'

say "A code, and what to do"
run explain 24727

say "Ten thousand rows through two filters"
awk 'BEGIN {
    srand(4)
    for (i = 0; i < 10000; ++i) {
        printf "%.3f,%.3f,%.3f,", 20 + 320 * rand(), -60 + 90 * rand(), -60 + 130 * rand()
        printf "%.3f,%.3f,%.3f\n", -100 + 200 * rand(), 10 + 80 * rand(), -150 + 300 * rand()
    }
}' >"$pictures/joints.csv"
echo '$ kine fk puma.json -i joints.csv --csv | kine ik puma.json --csv --jobs 2 | tail -2'
"$kine" fk puma.json -i "$pictures/joints.csv" --csv | "$kine" ik puma.json --csv --jobs 2 | tail -2
rm "$pictures/joints.csv"
echo

say "Pictures"
run plot arm track.json @level -o "$pictures/arm.svg"
run plot postures wrist_gravity.json "@first place" -o "$pictures/postures.svg"
run plot reach wrist_gravity.json --plane xz --step 30 -o "$pictures/reach.svg"
run plot deflection wrist_gravity.json --plane xz --step 30 -o "$pictures/deflection.svg"
