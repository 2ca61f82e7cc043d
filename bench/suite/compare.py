#!/usr/bin/python3
"""Runs each program of the suite in VesperScript and in Python, in turn, and prints the ratios of the medians.

usage: compare.py VESPER [--rounds N] [PROGRAM...]
"""

import argparse
import pathlib
import statistics
import subprocess
import sys
import time

PYTHON = "/usr/bin/python3"


def run(command):
    started = time.perf_counter()
    done = subprocess.run(command, capture_output=True, text=True, check=False)
    elapsed = time.perf_counter() - started
    if done.returncode != 0:
        sys.exit(f"{' '.join(command)} failed:\n{done.stdout}{done.stderr}")
    return elapsed, done.stdout


def compare(vesper, source, rounds):
    commands = ([vesper, "run", str(source)], [PYTHON, str(source.with_suffix(".py"))])
    times = ([], [])
    for _ in range(rounds):
        answers = []
        for command, taken in zip(commands, times):
            elapsed, answer = run(command)
            taken.append(elapsed)
            answers.append(answer)
        if answers[0] != answers[1]:
            sys.exit(f"{source.stem}: {answers[0]!r} is not {answers[1]!r}")
    return [statistics.median(taken) for taken in times]


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("vesper")
    parser.add_argument("--rounds", type=int, default=7)
    parser.add_argument("programs", nargs="*")
    options = parser.parse_intermixed_args()

    folder = pathlib.Path(__file__).parent
    sources = [source for source in sorted(folder.glob("*.vs")) if not options.programs or source.stem in options.programs]
    print(f"{'program':<12}{'ours ms':>9}{'python ms':>11}{'ratio':>8}")
    ratios = []
    for source in sources:
        ours, python = compare(options.vesper, source, options.rounds)
        ratios.append(ours / python)
        print(f"{source.stem:<12}{ours * 1e3:>9.1f}{python * 1e3:>11.1f}{ratios[-1]:>8.2f}", flush=True)
    print(f"{'geometric mean':<32}{statistics.geometric_mean(ratios):>8.2f}")


main()
