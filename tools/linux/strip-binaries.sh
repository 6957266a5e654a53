#!/usr/bin/env bash
# Strips every program and plug-in under a staged tree as Debian's helpers
# do: the symbol tables go (hosts need only the exported entry points), and
# so do the compiler's notes.
#   tools/linux/strip-binaries.sh FOLDER
set -euo pipefail
find "$1" -type f \( -name '*.so' -o -name '*.clap' -o -perm -u+x \) -print0 | while IFS= read -r -d '' file; do
    if [ "$(head -c 4 "$file" | od -An -c | tr -d ' ')" = '177ELF' ]; then
        strip --remove-section=.comment --remove-section=.note --strip-unneeded "$file"
    fi
done
