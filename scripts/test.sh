#!/usr/bin/env bash
# Builds and runs the whole test suite twice: the default preset, then the
# AddressSanitizer/UndefinedBehaviorSanitizer preset.  Warnings are errors.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
for preset in default asan; do
  echo "== preset $preset"
  cmake --preset "$preset"
  cmake --build --preset "$preset" -j2
  ctest --preset "$preset" -j2
  if [ "$preset" = default ]; then
    bash scripts/check-install.sh
  fi
done
