#!/usr/bin/env bash
# Makes the Debian package of the build and checks it as the package manager
# would take it: the control fields, the dependencies read from the programs,
# the triggers that refresh the desktop's caches, and the files it installs.
#   check-package.sh <build folder> <1 when the command-line companion is built>
set -euo pipefail
# shellcheck source=common.sh
. "$(dirname "$0")/common.sh"

cpack -G DEB --config "$build/CPackConfig.cmake" -B "$work" >"$work/cpack.log" 2>&1 ||
    fail "cpack failed: $(cat "$work/cpack.log")"
debs=("$work"/*.deb)
if [ ${#debs[@]} != 1 ] || [ ! -f "${debs[0]}" ]; then
    fail "cpack made no single .deb: ${debs[*]}"
fi
deb="${debs[0]}"

field() { dpkg-deb -f "$deb" "$1"; }
[ "$(field Package)" = vantrelix-app-builder ] || fail "Package is $(field Package)"
[ "$(field Architecture)" = "$(dpkg --print-architecture)" ] || fail "Architecture is $(field Architecture)"
[[ "$(field Version)" =~ ^[0-9]+\.[0-9]+\.[0-9]+$ ]] || fail "Version is $(field Version)"
[ -n "$(field Maintainer)" ] || fail "no Maintainer"
[ -n "$(field Description)" ] || fail "no Description"
# Read from the programs, except the image plugin that is loaded at run time.
for dependency in libc6 libstdc++6 libqt6widgets6 libqt6svg6; do
    [[ ", $(field Depends)," == *", $dependency"[\ ,]* ]] ||
        fail "Depends lacks $dependency: $(field Depends)"
done

dpkg-deb -e "$deb" "$work/control"
diff -u "$(dirname "$0")/../../dist/debian/triggers" "$work/control/triggers" ||
    fail "the package does not carry the triggers"

dpkg-deb -x "$deb" "$work/root"
expect_files "$work/root/usr"
file -b "$work/root/usr/bin/vantrelix-app-builder" | grep -q ", stripped" ||
    fail "the program in the package still carries its debugging information"
