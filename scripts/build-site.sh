#!/usr/bin/env bash
# Builds the documentation site, dist/site/index.html, from the Markdown pages, the headers' comments and the docstrings
# of the Python package. It needs neither a build of the library nor, once its tools are installed, a network.
# Sphinx comes from the package index, pinned by hash, into an environment in the cache.
set -euo pipefail
. "$(dirname "$0")/lib.sh"

install_packages doxygen python3 python3-pip python3-venv
python=$(python3 "$root/scripts/python_environment.py" site "$root/docs/site/requirements.txt")
cd "$root"
work=$root/build/site
pages=$work/pages
rm -rf "$work" dist/site
mkdir -p "$pages" dist

say "Reading the headers"
# read_headers NAME SETTING...: writes what Doxygen reads, as XML.
read_headers() {
    mkdir "$work/doxygen-$1"
    printf '%s\n' "@INCLUDE = docs/Doxyfile" "GENERATE_HTML = NO" "GENERATE_XML = YES" "XML_PROGRAMLISTING = NO" \
        "${@:2}" | QUAVIN_DOXYGEN_OUTPUT=$work/doxygen-$1 doxygen -
    # Breathe drops the indentation of a line of code that begins with a link.
    sed -i '/<codeline>/ { s,</\?\(ref\|highlight\)[^>]*>,,g
                           s,<codeline>,&<highlight class="normal">,; s,</codeline>,</highlight>&, }' \
        "$work/doxygen-$1/xml/"*.xml
}
read_headers cpp "EXCLUDE = include/quavin/c.h"
read_headers c "INPUT = include/quavin/c.h" "OPTIMIZE_OUTPUT_FOR_C = YES" "TYPEDEF_HIDES_STRUCT = YES"

say "Making the site"
# The pages as they are in the tree, so that the links between them stay valid, beside those that only the site has.
cp -r ./*.md docs examples "$pages"
mv "$pages"/docs/site/{index.md,reference} "$pages"
for header in include/quavin/*.h; do
    name=$(basename "$header" .h)
    [ "$name" != c ] || continue
    printf '# quavin/%s.h\n\n```{highlight} cpp\n```\n\n```{doxygenfile} %s.h\n```\n' "$name" "$name" \
        >"$pages/reference/cpp/$name.md"
    # The first paragraph of the comment on the file.
    brief=$(sed -n '/@file/,/^\/\/\/$\|^$/ { /@file/! s,^/// ,,p }' "$header")
    printf -- '- [quavin/%s.h](%s.md): %s\n' "$name" "$name" "${brief//$'\n'/ }" >>"$pages/reference/cpp/index.md"
done
# On a Git host the table there does this.
printf '\n```{toctree}\n:hidden:\n:glob:\n\n0*\n```\n' >>"$pages/docs/decisions/README.md"
PYTHONDONTWRITEBYTECODE=1 "$python" -W error::UserWarning -m sphinx --quiet --fail-on-warning --jobs auto \
    -c docs/site -d "$work/doctrees" "$pages" "$work/html"
rm -r "$work/html/"{.buildinfo,_sources}
mv "$work/html" dist/site
say "The site is dist/site/index.html"
