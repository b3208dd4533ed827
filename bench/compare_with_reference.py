#!/usr/bin/env python3
"""Solves and counts the same problems with two velkaro-cli builds and compares
their result text (stdout) byte for byte: the problems of a problem file and
random legal positions, with and without --second-moves, --min-moves and
--first-move. Meant for checking that a faster search still finds exactly
what the reference build finds.

  compare_with_reference.py REF_CLI NEW_CLI [--random N] [--seed S]
                            [--crowded-helpmates N] [--problems FILE]
                            [--timeout SECONDS]
"""

import argparse
import random
import re
import subprocess
import sys

PIECES = "QRBNP"
STIPULATIONS = ["#2", "#3", "#4", "S#2", "S#3", "H#2", "H#3", "H#4"]


def run(cli, args, timeout):
    try:
        done = subprocess.run([cli] + args, capture_output=True, text=True, timeout=timeout)
    except subprocess.TimeoutExpired:
        return None
    return done.returncode, done.stdout


def random_fen(rng, men=None):
    """Both kings and a few men of each side on distinct squares (`men` in
    all when given), pawns kept off the first and last ranks; the set-up check
    of the CLI refuses the rest (a side not to move in check)."""
    squares = rng.sample(range(64), men or 2 + rng.randint(1, 7))
    board = [""] * 64
    board[squares[0]], board[squares[1]] = "K", "k"
    for square in squares[2:]:
        man = rng.choice(PIECES)
        if man == "P" and (square < 8 or square >= 56):
            man = "N"
        board[square] = man if rng.random() < 0.5 else man.lower()
    rows = []
    for rank in range(8):
        row, empty = "", 0
        for file in range(8):
            man = board[rank * 8 + file]
            if man:
                row += (str(empty) if empty else "") + man
                empty = 0
            else:
                empty += 1
        rows.append(row + (str(empty) if empty else ""))
    return "/".join(rows) + " " + rng.choice("wb") + " - - 0 1"


def first_moves(cli, fen):
    """The legal first moves as --first-move arguments, from perft --divide."""
    result = run(cli, ["perft", "--fen", fen, "--depth", "1", "--divide"], 30)
    moves = []
    for line in (result[1] if result and result[0] == 0 else "").splitlines():
        text = line.split(":")[0]
        if text.startswith("0 - 0"):
            moves.append("0-0-0" if text.startswith("0 - 0 - 0") else "0-0")
            continue
        found = re.findall(r"[a-h][1-8]", text)
        if len(found) == 2:
            moves.append(found[0] + found[1] + re.sub(r".*[a-h][1-8]([QRBN]?)\s*$", r"\1", text.strip()))
    return moves


def cases_for(cli, fen, stipulation, rng, ep=None):
    base = ["solve", "--fen", fen, "--stip", stipulation] + (["--ep", ep] if ep else [])
    cases = [base, base + ["--min-moves"]]
    if not stipulation.startswith("H"):
        cases.append(base + ["--second-moves"])
    moves = first_moves(cli, fen)
    if moves:
        cases.append(base + ["--first-move", rng.choice(moves)])
    return cases


def read_problems(path):
    for line in open(path, encoding="utf-8"):
        if line.startswith("#") or "|" not in line:
            continue
        fields = [field.strip() for field in line.split("|")]
        ep = None if fields[3] == "-" else fields[3]
        yield fields[2] + " 0 1", fields[1], ep


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("ref")
    parser.add_argument("new")
    parser.add_argument("--random", type=int, default=200)
    parser.add_argument("--crowded-helpmates", type=int, default=0,
                        help="random positions of 6 to 14 men set as H#2 or H#3, where short mates abound")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--problems", default="")
    parser.add_argument("--timeout", type=float, default=60)
    options = parser.parse_args()
    rng = random.Random(options.seed)

    cases = []
    if options.problems:
        for fen, stipulation, ep in read_problems(options.problems):
            cases += cases_for(options.ref, fen, stipulation, rng, ep)
    for _ in range(options.random):
        fen = random_fen(rng)
        cases += cases_for(options.ref, fen, rng.choice(STIPULATIONS), rng)
        cases.append(["count", "--fen", fen, "--depth", str(rng.randint(2, 4))])
    for _ in range(options.crowded_helpmates):
        cases.append(["solve", "--fen", random_fen(rng, rng.randint(6, 14)), "--stip", rng.choice(["H#2", "H#3"])])

    compared = differing = skipped = 0
    for case in cases:
        expected = run(options.ref, case, options.timeout)
        if expected is None or expected[0] not in (0, 2):
            skipped += 1
            continue
        actual = run(options.new, case, options.timeout * 4)
        compared += 1
        if actual != expected:
            differing += 1
            print("DIFFERS:", " ".join(repr(arg) if " " in arg else arg for arg in case))
    print(f"{compared - differing} passed, {differing} failed, {skipped} skipped")
    return 1 if differing else 0


if __name__ == "__main__":
    sys.exit(main())
