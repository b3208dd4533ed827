#!/usr/bin/env bash
# Builds Velkaro and opens its window on the bundled example problems (the
# first position of examples/problems.fen), or on a game's start when that
# file is missing. Installs the Debian packages it needs first.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh
cmake --preset release >/dev/null
cmake --build --preset release -j "$(nproc)" --target velkaro

if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ] && [ -z "${QT_QPA_PLATFORM:-}" ]; then
  echo "No display to open the window on: set DISPLAY or WAYLAND_DISPLAY." >&2
  exit 1
fi

problems=examples/problems.fen
if [ -f "$problems" ]; then
  exec build/release/src/ui/velkaro "$problems"
fi
exec build/release/src/ui/velkaro
