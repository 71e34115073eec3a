#!/usr/bin/env bash
# Checks that clang-format would change nothing. Usage: check_format.sh ROOT
set -euo pipefail
cd "$1"
find platform model convert wizard app tests bench fuzz \( -name '*.h' -o -name '*.cpp' \) -print0 |
    xargs -0 clang-format --dry-run -Werror
