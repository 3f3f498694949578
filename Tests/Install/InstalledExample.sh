#!/usr/bin/env bash
# InstalledExample.sh BUILD SOURCE [FLAGS]: installs the build into a fresh prefix, builds the example against it in both ways that
# users have, and runs it.
set -euo pipefail
build=$1 source=$2 flags=${3:-}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cmake --install "$build" --prefix "$work/prefix" >/dev/null
for example in RenderStill HostDevice; do
    cmake -S "$source/Examples/$example" -B "$work/$example" -G Ninja -DCMAKE_PREFIX_PATH="$work/prefix" \
        -DCMAKE_CXX_FLAGS="$flags" >/dev/null
    cmake --build "$work/$example" >/dev/null
done

pc=$(dirname "$(find "$work/prefix" -name QVFilterExtension.pc)")
# The prefix of the file is that of the build's configuration; a relocated install says where it is.
export PKG_CONFIG_PATH=$pc
libdir=$(dirname "$pc")
g++ $flags "$source/Examples/RenderStill/main.cpp" -o "$work/render-still" \
    $(pkg-config --define-variable=prefix="$work/prefix" --define-variable=libdir="$libdir" \
        --define-variable=includedir="$work/prefix/include/QVFilterExtension" --cflags --libs QVFilterExtension) \
    -Wl,-rpath,"$libdir"

ffmpeg -v error -f lavfi -i testsrc=size=64x48 -frames:v 1 "$work/in.png"
for program in "$work/RenderStill/render-still" "$work/render-still"; do
    "$program" QVMosaicMTIFilter "$work/in.png" "$work/out.png" effectValue=1 | grep -q 64x48
    cmp -s "$work/in.png" "$work/out.png" && { echo "the picture did not change"; exit 1; }
    "$program" QVNoSuchFilter "$work/in.png" "$work/out.png" 2>/dev/null && { echo "an unknown class was taken"; exit 1; }
    rm "$work/out.png"
done
"$work/HostDevice/host-device" QVFireMTIFilter "$work/out.png" | grep -q "on the editor's"
test -s "$work/out.png"
"$work/prefix/bin/qvfilter" list >"$work/list.txt"  # whole: grep -q would close the pipe
grep -q QVMosaicMTIFilter "$work/list.txt"
