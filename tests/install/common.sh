# shellcheck shell=bash disable=SC2034
# Shared by the install and package checks, sourced first: their two
# arguments (the build folder, and 1 when the command-line companion is
# built), a scratch folder that goes when they end, and what an installed
# tree must hold.
build="$1"
with_vxpk="$2"
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT

fail() {
    echo "FAIL: $*"
    exit 1
}

# expect_files <root>: the files under root, relative to it, are exactly the
# installed files (the command-line companion's two only when it is built).
expect_files() {
    local root="$1"
    local here
    here="$(dirname "${BASH_SOURCE[0]}")"
    {
        cat "$here/installed-files.txt"
        if [ "$with_vxpk" = 1 ]; then
            printf '%s\n' bin/vxpk share/man/man1/vxpk.1
        fi
    } | sort >"$root.expected"
    (cd "$root" && find . -type f -o -type l | sed 's|^\./||' | sort) >"$root.found"
    if ! diff -u "$root.expected" "$root.found"; then
        fail "the files under $root are not the installed files (- missing, + extra)"
    fi
}
