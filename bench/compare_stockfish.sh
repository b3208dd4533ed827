#!/usr/bin/env bash
# Runs Debian's stockfish ("go perft N", one thread) on the positions of
# perft_bench and prints its nodes per second beside ours, with the ratio.
# Usage: bench/compare_stockfish.sh [build-dir]   (default build/release)
set -euo pipefail
build=${1:-build/release}
stockfish=$(command -v stockfish || echo /usr/games/stockfish)
[ -x "$stockfish" ] || { echo "stockfish is not installed (apt-get install stockfish)" >&2; exit 1; }

ours=$("$build/bench/perft_bench" 3)
echo "$ours"
run_stockfish() {  # fen depth -> best seconds of three runs
  local best=""
  for _ in 1 2 3; do
    local start end
    start=$(date +%s.%N)
    printf 'setoption name Threads value 1\nposition fen %s 0 1\ngo perft %s\nquit\n' "$1" "$2" | "$stockfish" >/dev/null
    end=$(date +%s.%N)
    best=$(echo "$start $end $best" | awk '{t = $2 - $1; if ($3 == "" || t < $3) print t; else print $3}')
  done
  echo "$best"
}
while IFS='|' read -r name fen depth nodes; do
  seconds=$(run_stockfish "$fen" "$depth")
  our_rate=$(echo "$ours" | awk -v n="$name" '$1 == n {print $(NF-2)}')
  echo "$name $depth $nodes $seconds $our_rate" |
    awk '{sf = $3 / $4 / 1e6; printf "%-9s stockfish perft %d: %.1f M nodes/s (process included); ours %.1f M leaves/s = %.0f%%\n", $1, $2, sf, $5, 100 * $5 / sf}'
done <<'POSITIONS'
start|rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -|6|119060324
kiwipete|r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq -|5|193690690
POSITIONS
