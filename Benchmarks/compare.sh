#!/usr/bin/env bash
# Prints the Markdown table of Docs/performance.md: this library beside what one would pick instead, on the same
# machine, over the same two frames of 1920x1080. Takes under two minutes on a quiet machine. Needs the targets
# qvcompare, QVFilterNative and demo-ready built; the column of movit stays empty without movit_bench.
set -euo pipefail
cd "$(dirname "$0")/.."
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

for picture in demo demo_b_000; do
    ffmpeg -v error -i build/demo-input/$picture.png -vf scale=1920:1080,format=rgba "$work/$picture.png"
done
frames=("$work/demo.png" "$work/demo_b_000.png")

QVFILTER_DEVICE=vulkan build/bin/qvcompare "${frames[@]}" >"$work/vulkan"
# Without the native component its column stays empty.
QVFILTER_DEVICE=native build/bin/qvcompare "${frames[@]}" >"$work/native" || true
Benchmarks/Comparison/ffmpeg-filters.sh "${frames[@]}" >"$work/ffmpeg"
if [[ -x build/bin/movit_bench ]]; then
    LIBGL_ALWAYS_SOFTWARE=1 build/bin/movit_bench "${frames[@]}" >"$work/movit"
else
    touch "$work/movit"
fi

figure() { # FILE JOB COLUMN
    awk -F '\t' -v job="$2" -v column="$3" \
        '$1 == job { printf "%.1f", $column; found = 1 } END { if (!found) printf "–" }' "$work/$1"
}

inCopies() { # FILE JOB
    awk -F '\t' -v job="$2" '$1 == "copy" { copy = $2 } $1 == job { printf " (%.0f)", $2 / copy }' "$work/$1"
}

echo "| job | native (copies) | Vulkan (copies) | FFmpeg, RGBA | FFmpeg, planar | movit |"
echo "|---|---:|---:|---:|---:|---:|"
while IFS='|' read -r job title; do
    echo "| $title | $(figure native "$job" 2)$(inCopies native "$job") | $(
        figure vulkan "$job" 2)$(inCopies vulkan "$job") | $(figure ffmpeg "$job" 2) | $(figure ffmpeg "$job" 3) | $(
        figure movit "$job" 2) |"
done <<'JOBS'
copy|copy
dissolve|cross dissolve: `MTIBlendFilter` normal at half; `xfade=fade`; `MixEffect`
overlay|overlay of a half transparent picture: `MTIBlendFilter` normal; `overlay`
screen|screen: `MTIBlendFilter` screen; `blend=screen`
saturation|saturation: `MTISaturationFilter`; `huesaturation`; `SaturationEffect`
hue|hue: `QVHueMTIFilter`; `hue`
lookup|colour table: `QVLookupMTIFilter` (64³); `lut3d` (33³)
rgbshift|shifted colours: `QVRGBMTIFilter`; `rgbashift`
mosaic|mosaic: `QVMosaicMTIFilter`; `pixelize`
blur|Gaussian blur, σ = 20: `MTIGaussianBlurFilter`; `gblur`; `BlurEffect`
slide|push to the left: `QVScrollTransitionMTIFilter`, blurred by its speed; `xfade=slideleft`, sharp
wipe|wipe along a picture: `QVPhotoDissolveTransitionMTIFilter`; `LumaMixEffect`
chain|chain of eight: saturation, exposure, mix, saturation, exposure, mix, saturation, exposure
JOBS
