#!/usr/bin/env bash
# Installs the build into a temporary prefix and checks it as a desktop would
# see it: the file list, the menu entry and the software centre's description
# with their validators, the icon sizes, the package file type by name and by
# contents, and a start of the installed App Builder.
#   check-install.sh <build folder> <1 when the command-line companion is built>
set -euo pipefail
# shellcheck source=common.sh
. "$(dirname "$0")/common.sh"
prefix="$work/prefix"
share="$prefix/share"

cmake --install "$build" --prefix "$prefix" >/dev/null
expect_files "$prefix"

# Quiet when content, the validator's own words when not.
validate() {
    local report
    report="$("$@" 2>&1)" || fail "$(printf '%s\n%s' "$*" "$report")"
}
validate desktop-file-validate "$share/applications/com.vantrelix.AppBuilder.desktop"
validate appstreamcli validate --no-net "$share/metainfo/com.vantrelix.AppBuilder.metainfo.xml"

for size in 16 32 48 64 128 256 512; do
    for png in "$share/icons/hicolor/${size}x${size}"/*/*.png; do
        file -b "$png" | grep -q "^PNG image data, $size x $size," ||
            fail "$png is not a $size pixel PNG: $(file -b "$png")"
    done
done

# The file type as the desktop's file browser finds it, from the installed
# tree's database alone (not the user's own).
update-mime-database "$share/mime" >/dev/null 2>&1 || fail "update-mime-database failed"
content_type() {
    XDG_DATA_HOME="$work/no-user-data" XDG_DATA_DIRS="$share:/usr/share" \
        gio info -a standard::content-type "$1" | sed -n 's/^ *standard::content-type: //p'
}
printf '\004V001\004Demo\003uid\004demo' >"$work/renamed-package"
printf '\004V002\004Demo\003uid\004demo' >"$work/other-version"
printf '\001\002\003' >"$work/named.vxpk"
while read -r name expected; do
    found="$(content_type "$work/$name")"
    [ "$found" = "$expected" ] || fail "$name is $found, not $expected"
done <<'ROWS'
renamed-package application/x-vxpk
named.vxpk application/x-vxpk
other-version application/octet-stream
ROWS

# The installed program finds its libraries and plugins, opens its window and
# waits for the user; it is ended from here.
QT_QPA_PLATFORM=offscreen HOME="$work" XDG_RUNTIME_DIR="$work" \
    "$prefix/bin/vantrelix-app-builder" >"$work/app.log" 2>&1 &
app=$!
sleep 2
if ! kill -0 "$app" 2>/dev/null; then
    cat "$work/app.log"
    fail "the installed App Builder ended by itself"
fi
kill -TERM "$app"
wait "$app" || true
