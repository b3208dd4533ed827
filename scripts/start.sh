#!/usr/bin/env bash
# Builds Velkaro and starts it on the bundled example problem. Installs the
# Debian packages it needs first.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh
cmake --preset release >/dev/null
cmake --build --preset release -j "$(nproc)" --target velkaro-cli

fen=$(grep -m 1 -E '^[1-8KQRBNPkqrbnp]+/' examples/problems.fen)
echo "velkaro-cli solve --fen \"$fen\" --stip \"#2\""
exec build/release/src/cli/velkaro-cli solve --fen "$fen" --stip "#2"
