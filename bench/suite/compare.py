#!/usr/bin/python3
"""Runs each program of the suite in one of our languages and in Python, in turn, and prints the ratios of the medians
of the processor time that they take, which other programs on the machine disturb less than the time that passes.
With --less-start what an empty program takes is taken off.

usage: compare.py VESPER [--language vs|lua|rwby] [--less-start] [--rounds N] [PROGRAM...]
"""

import argparse
import pathlib
import resource
import statistics
import subprocess
import sys
import tempfile

PYTHON = "/usr/bin/python3"


def processor_time():
    used = resource.getrusage(resource.RUSAGE_CHILDREN)
    return used.ru_utime + used.ru_stime


def run(command):
    started = processor_time()
    done = subprocess.run(command, capture_output=True, text=True, check=False)
    elapsed = processor_time() - started
    if done.returncode != 0:
        sys.exit(f"{' '.join(command)} failed:\n{done.stdout}{done.stderr}")
    return elapsed, done.stdout


def measure(vesper, source, rounds):
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


def measure_start(vesper, language, rounds):
    with tempfile.TemporaryDirectory() as folder:
        empty = pathlib.Path(folder) / f"empty.{language}"
        for name in (empty, empty.with_suffix(".py")):
            name.write_text("x = 1\n")
        return measure(vesper, empty, rounds)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("vesper")
    parser.add_argument("--language", default="vs")
    parser.add_argument("--less-start", action="store_true")
    parser.add_argument("--rounds", type=int, default=7)
    parser.add_argument("programs", nargs="*")
    options = parser.parse_intermixed_args()

    folder = pathlib.Path(__file__).parent
    sources = [source for source in sorted(folder.glob(f"*.{options.language}"))
               if not options.programs or source.stem in options.programs]
    starts = measure_start(options.vesper, options.language, options.rounds) if options.less_start else (0, 0)
    print(f"{'program':<12}{'ours ms':>9}{'python ms':>11}{'ratio':>8}")
    ratios = []
    for source in sources:
        taken = measure(options.vesper, source, options.rounds)
        ours, python = (max(whole - start, 1e-5) for whole, start in zip(taken, starts))
        ratios.append(ours / python)
        print(f"{source.stem:<12}{ours * 1e3:>9.1f}{python * 1e3:>11.1f}{ratios[-1]:>8.2f}", flush=True)
    print(f"{'geometric mean':<32}{statistics.geometric_mean(ratios):>8.2f}")


main()
