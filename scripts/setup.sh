#!/usr/bin/env bash
# Installs what the build and the tests need, when it is not already there:
# a C++17 compiler, CMake, GoogleTest and Google Benchmark from Debian.
set -euo pipefail
need=()
command -v cmake >/dev/null 2>&1 || need+=(cmake)
command -v g++ >/dev/null 2>&1 || need+=(g++)
[ -f /usr/lib/x86_64-linux-gnu/cmake/GTest/GTestConfig.cmake ] || [ -d /usr/include/gtest ] || need+=(libgtest-dev)
[ -d /usr/include/benchmark ] || need+=(libbenchmark-dev)
command -v python3 >/dev/null 2>&1 || need+=(python3)
if [ ${#need[@]} -gt 0 ]; then
  echo "setup: installing ${need[*]}"
  SUDO=""
  [ "$(id -u)" -eq 0 ] || SUDO="sudo"
  $SUDO apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq "${need[@]}"
fi
