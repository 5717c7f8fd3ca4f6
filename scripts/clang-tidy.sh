#!/usr/bin/env bash
# Prints the path of the pinned clang-tidy, after putting it into the cache if it is not there yet. It comes from the
# package index: it skips the headers of others, where Debian's version spends four fifths of its time.
set -euo pipefail
scripts=$(dirname "$0")
python=$(python3 "$scripts/python_environment.py" lint "$scripts/lint-requirements.txt")
echo "${python%/bin/python}"/lib/python3*/site-packages/clang_tidy/data/bin/clang-tidy
