#!/usr/bin/env bash
# mime_claims.sh UPDATE-MIME-DATABASE TYPE.xml: the type claims *.grl, and neither other names nor contents.
set -euo pipefail
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
mkdir -p "$folder/mime/packages"
cp "$2" "$folder/mime/packages/"
"$1" "$folder/mime" 2>/dev/null
globs=$(grep -v '^#' "$folder/mime/globs")
[ "$globs" = "application/x-zavrogrl-book:*.grl" ] || {
    echo "claims: $globs" >&2
    exit 1
}
# The file of magic numbers holds its own header line alone.
[ "$(wc -c <"$folder/mime/magic")" -le 12 ] || {
    echo "claims files by their content" >&2
    exit 1
}
