#!/usr/bin/env bash
# Makes the Debian package from a finished build, unpacks it into a scratch
# root and checks what it holds and what it depends on; then runs the
# unpacked batch runner once.
#   scripts/check_package.sh BUILD_DIR
set -euo pipefail
build=$(cd "$1" && pwd)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
fail() { echo "check_package: $*" >&2; exit 1; }

version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "$build/CMakeCache.txt")
(cd "$build" && cpack -G DEB -B "$scratch/out" >"$scratch/cpack.log") || { cat "$scratch/cpack.log" >&2; fail "cpack failed"; }
deb="$scratch/out/reelwright_${version}_amd64.deb"
[ -f "$deb" ] || fail "no $(basename "$deb"): $(ls "$scratch/out")"
dpkg-deb -x "$deb" "$scratch/root"
root="$scratch/root"

for f in usr/bin/reelwright usr/bin/reelwright-batch \
         usr/share/man/man1/reelwright.1.gz usr/share/man/man1/reelwright-batch.1.gz \
         usr/share/applications/reelwright.desktop usr/share/icons/hicolor/scalable/apps/reelwright.svg \
         usr/share/reelwright/LICENSE usr/share/doc/reelwright/copyright; do
  [ -f "$root/$f" ] || fail "$f is missing"
done
qm=$(find "$root/usr/share/reelwright/VideoTranslation" -name 'LANG_*.qm' | wc -l)
[ "$qm" -eq 11 ] || fail "$qm translations instead of 11"
outside=$(cd "$root" && find . -mindepth 1 -maxdepth 1 ! -name usr)
[ -z "$outside" ] || fail "files outside /usr: $outside"
[ -z "$(find "$root/usr/bin" -mindepth 1 ! -name 'reelwright*')" ] || fail "more than the programs in /usr/bin"
cmp -s "$root/usr/share/reelwright/LICENSE" "$(dirname "$0")/../LICENSE" || fail "LICENSE differs"
head -1 "$root/usr/share/doc/reelwright/copyright" | grep -q '^Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/' \
  || fail "copyright isn't in the machine-readable format"

depends=$(dpkg-deb -f "$deb" Depends)
for p in ffmpeg fonts-noto-core fonts-noto-cjk libqt5core5a libqt5gui5 libqt5widgets5 libqt5network5 libfaad2; do
  grep -Eq "(^|, )$p( |,|$)" <<<"$depends" || fail "Depends lacks $p: $depends"
done

# The unpacked runner uses the system's ffmpeg (there is no Libmp4 beside it).
[ "$("$root/usr/bin/reelwright-batch" --version)" = "reelwright-batch $version" ] || fail "--version"
printf '\0%.0s' $(seq 4096) >"$scratch/zero.avi"
"$root/usr/bin/reelwright-batch" --quiet "$scratch/zero.avi" | grep -q '"event":"end"' || fail "the runner gave no end line"
echo "check_package: $(basename "$deb") is complete ($(dpkg-deb -f "$deb" Installed-Size) KiB installed)"
