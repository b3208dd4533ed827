#!/usr/bin/env bash
# Builds Velkaro and starts it on the bundled example problem. Installs the
# Debian packages it needs first.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh
cmake --preset release >/dev/null
cmake --build --preset release -j "$(nproc)" --target velkaro-cli

fen=$(grep -v '^\[' examples/start.fen | head -n 1)
echo "velkaro-cli perft --fen \"$fen\" --depth 5 --divide"
exec build/release/src/cli/velkaro-cli perft --fen "$fen" --depth 5 --divide
