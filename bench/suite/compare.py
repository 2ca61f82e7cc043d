#!/usr/bin/python3
"""Runs each program of the suite in our languages and in Python, in turn, and prints the ratios of the medians.

usage: compare.py VESPER [--rounds N] [--language vs|lua] [PROGRAM...]

Each run is a whole process; the median time of an empty program is taken off. Answers that differ end the run, except
where a language writes them differently.
"""

import argparse
import pathlib
import statistics
import subprocess
import sys
import tempfile
import time

PYTHON = "/usr/bin/python3"


def run(command):
    started = time.perf_counter()
    done = subprocess.run(command, capture_output=True, text=True, check=False)
    elapsed = time.perf_counter() - started
    if done.returncode != 0:
        sys.exit(f"{' '.join(command)} failed:\n{done.stdout}{done.stderr}")
    return elapsed, done.stdout


def start_up(command, suffix, rounds):
    with tempfile.NamedTemporaryFile(suffix=suffix) as empty:
        return statistics.median(run([*command, empty.name])[0] for _ in range(rounds))


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
    parser.add_argument("--language", default="vs")
    parser.add_argument("programs", nargs="*")
    options = parser.parse_intermixed_args()

    folder = pathlib.Path(__file__).parent
    sources = [source for source in sorted(folder.glob("*." + options.language)) if not options.programs or source.stem in options.programs]
    print(f"{'program':<12}{'ours ms':>9}{'python ms':>11}{'ratio':>8}")
    idle = (start_up([options.vesper, "run"], "." + options.language, options.rounds), start_up([PYTHON], ".py", options.rounds))
    ratios = []
    for source in sources:
        ours, python = (max(taken - waited, 1e-4) for taken, waited in zip(compare(options.vesper, source, options.rounds), idle))
        ratios.append(ours / python)
        print(f"{source.stem:<12}{ours * 1e3:>9.1f}{python * 1e3:>11.1f}{ratios[-1]:>8.2f}", flush=True)
    print(f"{'geometric mean':<32}{statistics.geometric_mean(ratios):>8.2f}")


main()
