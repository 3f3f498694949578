#!/usr/bin/env bash
# Milliseconds a frame of FFmpeg's own filters, one job a line: name, tab, with RGBA frames, tab, with frames in a
# planar format that the filters read and write without a conversion. The frames are two pictures held in memory;
# the time of the same run without the filter is taken off.
set -euo pipefail
if (($# != 2)); then
    echo "usage: $0 FIRST.png SECOND.png" >&2
    exit 2
fi
first=$1 second=$2
frames=30 rounds=2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Both pictures as endless clips of 25 frames a second in one pixel format, the second of them half transparent
# when $veil says so.
veil=
sources() { # FORMAT
    local hold="loop=loop=-1:size=1,setpts=N/(25*TB)"
    echo "[0]format=$1,${hold}[a];[1]format=$1,$veil${hold}[b]"
}

# Seconds of the fastest run. Both inputs are read in every run, so that the difference is the filter's alone.
fastest() { # GRAPH
    local best=1e9 start took
    for ((round = 0; round < rounds; ++round)); do
        start=$EPOCHREALTIME
        ffmpeg -v error -nostdin -i "$first" -i "$second" -filter_complex "$1" -map '[out]' \
            -frames:v $frames -f null -
        took=$(awk "BEGIN { print $EPOCHREALTIME - $start }")
        best=$(awk "BEGIN { print $took < $best ? $took : $best }")
    done
    echo "$best"
}

declare -A idle
milliseconds() { # FORMAT FILTERS
    local graph
    if [[ -z ${idle[$1]:-} ]]; then
        idle[$1]=$(fastest "$(sources "$1");[b]nullsink;[a]format=$1[out]")
    fi
    graph="$(sources "$1");$2,format=$1[out]"
    if [[ $2 != *"[b]"* ]]; then graph+=";[b]nullsink"; fi
    awk -v with="$(fastest "$graph")" -v without="${idle[$1]}" -v frames=$frames \
        'BEGIN { print (with - without) * 1000 / frames }'
}

job() { # NAME PLANAR-FORMAT FILTERS
    milliseconds rgba "$3" >"$work/rgba"
    milliseconds "$2" "$3" >"$work/planar"
    printf '%s\t%s\t%s\n' "$1" "$(<"$work/rgba")" "$(<"$work/planar")"
}

# A table of 33 x 33 x 33 colours, as grading programs write it.
awk 'BEGIN { print "LUT_3D_SIZE 33"
             for (b = 0; b < 33; ++b) for (g = 0; g < 33; ++g) for (r = 0; r < 33; ++r)
                 print r / 32, g / 32, b / 32 }' >"$work/table.cube"

saturation() { echo "huesaturation=saturation=$1"; }
exposure() { echo "colorchannelmixer=rr=$1:gg=$1:bb=$1"; }
mix() { echo "blend=all_mode=normal:all_opacity=$1"; }

job dissolve gbrap "[a][b]xfade=transition=fade:duration=10:offset=0"
job slide gbrap "[a][b]xfade=transition=slideleft:duration=10:offset=0"
job screen gbrap "[a][b]blend=all_mode=screen"
job saturation gbrap "[a]$(saturation -0.7)"
job hue yuva444p "[a]hue=h=57.3"
job lookup gbrap "[a]lut3d=file=$work/table.cube"
job rgbshift gbrap "[a]rgbashift=rh=-49:bh=49"
job mosaic gbrap "[a]pixelize=width=58:height=58"
job blur gbrap "[a]gblur=sigma=20"
job chain gbrap "[b]split[c][d];[a]$(saturation -0.3),$(exposure 1.189)[e];[c][e]$(mix 0.3),$(saturation 0.3),$(
    exposure 0.841)[f];[d][f]$(mix 0.2),$(saturation -0.2),$(exposure 1.072)"
veil="colorchannelmixer=aa=0.5,"
job overlay gbrap "[a][b]overlay=format=gbrp"
