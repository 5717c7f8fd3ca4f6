#!/usr/bin/env bash
# Builds the documentation site and looks at every page of it in a browser: scripts/test-site.sh
# Selenium comes from the package index, pinned by hash, into an environment in the cache.
set -euo pipefail
. "$(dirname "$0")/lib.sh"

install_packages chromium chromium-driver python3 python3-pip python3-venv
python=$(python3 "$root/scripts/python_environment.py" site-test "$root/tests/site/requirements.txt")
"$root/scripts/build-site.sh"

say "Looking at the site in a browser"
PYTHONDONTWRITEBYTECODE=1 "$python" "$root/tests/site/site_test.py"
