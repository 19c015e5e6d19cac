#!/usr/bin/env bash
# Installs the default build into a scratch prefix and builds a program
# against it twice: through find_package(qelmath) and through pkg-config.
set -euo pipefail
cd "$(dirname "$0")/.."
prefix="$PWD/build/install-check/prefix"
rm -rf build/install-check
cmake --install build/default --prefix "$prefix" >/dev/null
cmake -S examples/consumer -B build/install-check/cmake -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build build/install-check/cmake >/dev/null
build/install-check/cmake/consumer
libdir=$(dirname "$(dirname "$(find "$prefix" -name qelmath.pc | head -n 1)")")
PKG_CONFIG_PATH="$libdir/pkgconfig" c++ -std=c++17 examples/consumer/main.cpp \
  $(PKG_CONFIG_PATH="$libdir/pkgconfig" pkg-config --cflags --libs qelmath) \
  -Wl,-rpath,"$libdir" -o build/install-check/consumer-pc
build/install-check/consumer-pc
echo "install check: passed"
