#!/usr/bin/env python3
"""Runs kova-translate over thousands of damaged files, each in a process of its own.

Usage: mutate.py PROGRAM GENERATOR [COUNT [SEED]]

The files are made from small sound ones: cut at every byte, with flipped bits, with numbers, counts
and references that cannot be, with pieces moved, doubled and nested. Whatever comes of it, the
program must end by itself within 5 s, with status 0 or 1, within 64 MiB and 20 times the file; a
failure names the file and leaves nothing behind. What breaks this is kept in the folder findings/
beside the work folder.
"""

import concurrent.futures
import os
import pathlib
import random
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time

SECONDS = 5
ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
NUMBER = re.compile(rb"[-+]?[0-9]+(?:\.[0-9]*)?(?:[Ee][-+]?[0-9]+)?")
REFERENCE = re.compile(rb"#[0-9]+")
EXTREMES = (b"0", b"-1", b"1E308", b"-1.E+308", b"1.E-320", b"1E999", b"nan", b"inf", b"4294967295",
            b"2147483648", b"99999999999999999999", b"0.0000000000000000000001", b"$", b"*", b"''",
            b"()", b"1" * 500)
COUNTS = (b"\xff\xff\xff\xff", b"\xff\xff\xff\x7f", b"\x00\x00\x00\x80", b"\x00\x00\x00\x00",
          b"\x00\x00\x80\x7f", b"\x00\x00\xc0\x7f", b"\x40\x42\x0f\x00")


def memory_limit(file_bytes):
    return 64 * 1024 * 1024 + 20 * file_bytes


def make_seeds(generator, folder):
    """Small sound files of every format, by their extension."""
    seeds = []

    def generate(name, *arguments):
        path = folder / name
        subprocess.run([generator, *arguments, str(path)], check=True, stdout=subprocess.DEVNULL)
        seeds.append((path.suffix, path.read_bytes()))

    generate("binary.stl", "--shape", "gear", "--triangles", "200")
    generate("ascii.stl", "--ascii", "--shape", "knot", "--triangles", "100")
    for extra in sorted((ROOT / "fuzz" / "corpus").glob("kova_fuzz_*")):
        suffix = {"kova_fuzz_stl": ".stl", "kova_fuzz_ply": ".ply", "kova_fuzz_step": ".stp"}
        if extra.name in suffix:
            for path in sorted(extra.iterdir()):
                if path.stat().st_size < 200_000:
                    seeds.append((suffix[extra.name], path.read_bytes()))
    try:
        generate("assembly.stp")
    except subprocess.CalledProcessError:
        pass
    for path in sorted((ROOT.parent / "shared" / "models").glob("*.stp")):
        seeds.append((".stp", path.read_bytes()))
    return seeds


def replace_match(data, pattern, choose, dice):
    matches = [m for m in pattern.finditer(data[:1_000_000])]
    if not matches:
        return data
    match = dice.choice(matches)
    return data[:match.start()] + choose(matches) + data[match.end():]


def nest(data, dice):
    at = dice.randrange(len(data) + 1)
    depth = dice.choice((10, 1000, 100_000))
    opened, closed = dice.choice(((b"(", b")"), (b"(", b""), (b"A(", b")"), (b"/*", b""), (b"'", b"")))
    return data[:at] + opened * depth + closed * depth + data[at:]


def flip(data, dice):
    damaged = bytearray(data)
    for _ in range(dice.choice((1, 1, 1, 4, 64))):
        damaged[dice.randrange(len(damaged))] ^= 1 << dice.randrange(8)
    return bytes(damaged)


def cut_piece(data, dice):
    start = dice.randrange(len(data))
    return data[:start] + data[start + dice.choice((1, 10, 1000)):]


def double_piece(data, dice):
    start = dice.randrange(len(data))
    piece = data[start:start + dice.choice((1, 10, 1000))]
    at = dice.randrange(len(data))
    return data[:at] + piece * dice.choice((1, 2, 50)) + data[at:]


def overwrite_count(data, dice):
    count = dice.choice(COUNTS)
    at = dice.choice((80, dice.randrange(max(1, len(data) - 4))))
    return data[:at] + count + data[at + 4:]


MUTATIONS = (
    flip,
    flip,
    lambda data, dice: data[:dice.randrange(len(data))],
    lambda data, dice: replace_match(data, NUMBER, lambda _: dice.choice(EXTREMES), dice),
    lambda data, dice: replace_match(data, REFERENCE,
                                     lambda all: dice.choice(all).group(0), dice),
    lambda data, dice: replace_match(data, REFERENCE,
                                     lambda all: dice.choice(all).group(0), dice),
    overwrite_count,
    cut_piece,
    double_piece,
    nest,
)


def make_files(seeds, count, dice):
    """Every cut of the small seeds first, as far as a third of the count goes; chance for the rest."""
    made = 0
    cuts = [(suffix, data, at) for suffix, data in seeds if len(data) < 4000
            for at in range(len(data))]
    dice.shuffle(cuts)
    for suffix, data, at in cuts[:count // 3]:
        made += 1
        yield suffix, data[:at]
    while made < count:
        suffix, data = dice.choice(seeds)
        for _ in range(dice.choice((1, 1, 2, 3))):
            if data:
                data = dice.choice(MUTATIONS)(data, dice)
        made += 1
        yield suffix, data


def run_one(program, folder, number, suffix, data):
    """What is wrong with the run, or an empty text."""
    work = folder / f"run{number}"
    work.mkdir()
    name = f"damaged{suffix}"
    (work / name).write_bytes(data)
    with open(work / "messages", "wb") as messages:
        process = subprocess.Popen([program, "-o", "result.obj", name], cwd=work,
                                   stdin=subprocess.DEVNULL, stdout=messages, stderr=messages)
        deadline = time.monotonic() + SECONDS
        while True:
            pid, status, usage = os.wait4(process.pid, os.WNOHANG)
            if pid != 0:
                break
            if time.monotonic() > deadline:
                process.kill()
                os.wait4(process.pid, 0)
                process.returncode = -signal.SIGKILL
                return f"runs longer than {SECONDS} s", work
            time.sleep(0.001)
    process.returncode = os.waitstatus_to_exitcode(status)
    text = (work / "messages").read_bytes()
    left = {path.name for path in work.iterdir()} - {name, "messages", "vexil_read.log"}
    peak = usage.ru_maxrss * 1024
    problem = ""
    if process.returncode not in (0, 1):
        problem = f"ends with status {process.returncode}"
    elif "SANITIZE" not in os.environ and peak > memory_limit(len(data)):
        problem = f"takes {peak >> 20} MiB for a file of {len(data)} bytes"
    elif process.returncode == 1 and left:
        problem = f"leaves {', '.join(sorted(left))}"
    elif process.returncode == 1 and name.encode() not in text:
        problem = "fails without naming the file"
    elif process.returncode == 0 and left != {"result.obj"}:
        problem = f"succeeds and leaves {', '.join(sorted(left)) or 'nothing'}"
    if not problem:
        shutil.rmtree(work)
    return problem, work


def main():
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    program, generator = (str(pathlib.Path(argument).resolve()) for argument in sys.argv[1:3])
    count = int(sys.argv[3]) if len(sys.argv) > 3 else 10_000
    seed = int(sys.argv[4]) if len(sys.argv) > 4 else random.randrange(1 << 30)
    print(f"{count} damaged files, seed {seed}", flush=True)
    dice = random.Random(seed)
    findings = pathlib.Path("build/mutations/findings")
    problems = 0
    with tempfile.TemporaryDirectory(prefix="kova-mutations-") as temporary:
        folder = pathlib.Path(temporary)
        seeds = [pair for pair in make_seeds(generator, folder) if pair[1]]
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            pending = set()
            for number, (suffix, data) in enumerate(make_files(seeds, count, dice)):
                pending.add(pool.submit(run_one, program, folder, number, suffix, data))
                if len(pending) < 64 and number + 1 < count:
                    continue
                done, pending = concurrent.futures.wait(
                    pending, return_when=(concurrent.futures.ALL_COMPLETED if number + 1 == count
                                          else concurrent.futures.FIRST_COMPLETED))
                for run in done:
                    problem, work = run.result()
                    if problem:
                        problems += 1
                        findings.mkdir(parents=True, exist_ok=True)
                        kept = findings / f"{seed}-{work.name}"
                        shutil.move(work, kept)
                        print(f"{kept}: {problem}", flush=True)
    print(f"{count} damaged files, {problems} findings")
    sys.exit(1 if problems else 0)


if __name__ == "__main__":
    main()
