#!/usr/bin/env bash
# Builds the library and the evaluator, then evaluates the showcase, printing
# each expression with its result.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
cmake --preset default >/dev/null
cmake --build --preset default -j2 >/dev/null
build/default/bin/qelmath eval --echo - < examples/showcase.txt
