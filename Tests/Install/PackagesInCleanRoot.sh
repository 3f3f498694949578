#!/usr/bin/env bash
# PackagesInCleanRoot.sh BUILD: installs the Debian packages of a build in a fresh system of their own, as the Dockerfile does and all of them,
# uses and removes them. Needs root, debootstrap and the machine's package source; not part of the suite.
set -euo pipefail
packages=$(cd "${1:-build}/packages" && pwd)
dockerfile=$(cd "$(dirname "$0")/../.." && pwd)/Dockerfile
root=$(mktemp -d)
trap 'umount "$root/proc" "$root/dev" 2>/dev/null; rm -rf --one-file-system "$root"' EXIT

source /etc/os-release
mirror=$(apt-get indextargets --format '$(REPO_URI)' "Codename: $VERSION_CODENAME" | head -1)
debootstrap --variant=minbase "$VERSION_CODENAME" "$root" "$mirror" >/dev/null
rm -f "$root/etc/apt/sources.list"
cp -r /etc/apt/. "$root/etc/apt/"
mount -t proc proc "$root/proc"
mount --bind /dev "$root/dev"
cp /etc/resolv.conf "$root/etc/" 2>/dev/null || true
in_root() { chroot "$root" env DEBIAN_FRONTEND=noninteractive LC_ALL=C "$@"; }

# The Dockerfile's lines.
mkdir "$root/packages"
(cd "$packages" && cp $(sed -n 's|^COPY \(.*\) /packages/$|\1|p' "$dockerfile") "$root/packages/")
in_root sh -euc "$(sed -n 's/^RUN //p' "$dockerfile")" >/dev/null
entry=$(sed -n 's/^ENTRYPOINT \["\(.*\)"\]$/\1/p' "$dockerfile")
in_root "$entry" sheet --only QVSnowMTIFilter -o /tmp/sheet.png
test -s "$root/tmp/sheet.png"

mkdir "$root/packages"
cp "$packages"/*.deb "$root/packages/"
in_root apt-get update -qq
in_root bash -c 'apt-get install -y -qq /packages/*.deb ffmpeg melt gcc libc6-dev pkg-config >/dev/null'
in_root bash -euc '
    cd /tmp
    ffmpeg -v error -f lavfi -i testsrc=s=320x180:d=0.4 -pix_fmt yuv420p in.mp4
    qvfilter list >classes.txt
    grep -q QVMosaicMTIFilter classes.txt
    qvfilter render -i in.mp4 -e crosshatch -o out.mp4 --quiet
    ffmpeg -v error -i in.mp4 -vf format=rgba,frei0r=QVCrosshatchMTIFilter -pix_fmt yuv420p frei0r.mp4
    melt -silent in.mp4 -filter qv.QVCrosshatchMTIFilter -consumer avformat:melt.mp4 an=1 real_time=-1
    python3 -c "import numpy as np, qv; assert qv.Effect(\"crosshatch\")(np.full((90, 160, 3), 99, np.uint8)).std() > 1"
    echo "#include <qv.h>
          int main(void) { return qv_class_count() < 100; }" >main.c
    gcc main.c -o main $(pkg-config --cflags --libs qv)
    ./main
    for file in out frei0r melt; do test -s $file.mp4; done
    cmp -s in.mp4 frei0r.mp4 && exit 1
    ours=$(dpkg-query -W -f "\${Package}\n" | grep qv)
    apt-get purge -y -qq $ours >/dev/null
    left=$(find /usr /etc -name "QV*" -o -name "libQV*" -o -name "libqv.*" -o -name "libqvfrei0r*" -o -name "libmltqv*" -o -name "qvfilter*" \
        -o -name "qv.*" -o -path "*/dist-packages/qv")
    test -z "$left" || { echo "left behind: $left"; exit 1; }'
echo "the packages install, work and go"
