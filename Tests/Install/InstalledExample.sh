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

# As documented, for a prefix that the configuration did not know, and after the installation was moved.
mv "$work/prefix" "$work/moved"
libdir=$(dirname "$(dirname "$(find "$work/moved" -name QVFilterExtension.pc)")")
export PKG_CONFIG_PATH=$libdir/pkgconfig LD_LIBRARY_PATH=$libdir
g++ $flags "$source/Examples/RenderStill/main.cpp" -o "$work/render-still" $(pkg-config --cflags --libs QVFilterExtension)

gcc -std=c11 -Wall -Wextra -Werror "$source/Examples/CRender/main.c" -o "$work/c-render" $(pkg-config --cflags --libs qv)

# The package, the headers, the library and the tool are of one version.
version=$(pkg-config --modversion QVFilterExtension)
cat >"$work/version.cpp" <<'END'
#include <cstdio>
#include <string>

#include <QVFilterExtension/QVFilterVersion.h>
int main() {
    std::printf("%d.%d.%d %s %s\n", QV_FILTER_VERSION_MAJOR, QV_FILTER_VERSION_MINOR, QV_FILTER_VERSION_PATCH,
                QV_FILTER_VERSION, std::string(qv::filterLibraryVersion()).c_str());
}
END
g++ $flags "$work/version.cpp" -o "$work/version" $(pkg-config --cflags --libs QVFilterExtension)
[ "$("$work/version")" = "$version $version $version" ]
[ "$("$work/moved/bin/qvfilter" --version)" = "qvfilter $version" ]

# The shells complete what the tool that was built takes.
for shell in "bash bash-completion/completions/qvfilter" "zsh zsh/site-functions/_qvfilter"; do
    "$work/moved/bin/qvfilter" completion ${shell% *} | cmp - "$work/moved/share/${shell#* }"
done

# The finder of people, where it was built.
if pkg-config --exists QVPersonMask; then
    cat >"$work/people.cpp" <<'END'
#include <QVPersonMask/PersonMaskSequence.h>
int main() {
    std::string error;
    const auto people = qv::PersonMask::create("/nonexistent", &error);
    qv::PersonMaskSequence masks(people, 0);
    return people || error.empty() || masks.hasMask();
}
END
    g++ $flags "$work/people.cpp" -o "$work/people" $(pkg-config --cflags --libs QVPersonMask)
    "$work/people"
fi

ffmpeg -v error -f lavfi -i testsrc=size=64x48 -frames:v 1 "$work/in.png"
for program in "$work/RenderStill/render-still" "$work/render-still"; do
    "$program" QVMosaicMTIFilter "$work/in.png" "$work/out.png" effectValue=1 | grep -q 64x48
    cmp -s "$work/in.png" "$work/out.png" && { echo "the picture did not change"; exit 1; }
    "$program" QVNoSuchFilter "$work/in.png" "$work/out.png" 2>/dev/null && { echo "an unknown class was taken"; exit 1; }
    rm "$work/out.png"
done
"$work/c-render" crosshatch "$work/in.png" "$work/out.ppm" effectValue=1 | grep -q "64x48 by QVCrosshatchMTIFilter"
{ "$work/c-render" crosshatch "$work/in.png" "$work/out.ppm" effectValue=2 2>&1 || true; } | grep -q "outside 0 to 1"
ffmpeg -v error -i "$work/out.ppm" -pix_fmt rgb24 -f rawvideo - | cmp -s - <(ffmpeg -v error -i "$work/in.png" -pix_fmt rgb24 -f rawvideo -) &&
    { echo "the C program's picture did not change"; exit 1; }
"$work/HostDevice/host-device" QVFireMTIFilter "$work/out.png" | grep -q "on the editor's"
test -s "$work/out.png"
"$work/moved/bin/qvfilter" list >"$work/list.txt"  # whole: grep -q would close the pipe
grep -q QVMosaicMTIFilter "$work/list.txt"
