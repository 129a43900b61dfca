#!/usr/bin/env bash
# Makes the reference of the public headers as HTML; whatever has no doc comment fails.
#   scripts/docs.sh [FOLDER]   into build/docs, or that folder; begin with its index.html
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
out=${1:-build/docs}

# What an older state of the headers left would stay in the site.
[ $# -gt 0 ] || rm -rf "$out"
mkdir -p "$out"
{
  cat docs/Doxyfile
  printf 'OUTPUT_DIRECTORY = "%s"\n' "$out"
} | doxygen -
echo "docs: $out/index.html"
