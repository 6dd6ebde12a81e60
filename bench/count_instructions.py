"""Counts instructions per item of every row with callgrind, and compares them with the committed counts.

    count_instructions.py BENCH_PKIDER [--write]
"""

import json
import os
import pathlib
import subprocess
import sys
import tempfile

COMMITTED = pathlib.Path(__file__).with_name("instructions.json")
ALLOWED_GROWTH = 1.05

# memcpy and its kind in the form that every x86-64 processor has, so that the counts are those of any machine.
SAME_EVERYWHERE = {"GLIBC_TUNABLES": "glibc.cpu.hwcaps=-AVX,-AVX2,-AVX512F,-AVX512VL,-AVX_Fast_Unaligned_Load,-ERMS,-FSRM"}


def count(program):
    """Row name -> instructions per item. The program dumps once a row and prints `name items` for each."""
    with tempfile.TemporaryDirectory() as folder:
        command = ["valgrind", "--tool=callgrind", f"--callgrind-out-file={folder}/out", program, "--count"]
        environment = os.environ | SAME_EVERYWHERE
        printed = subprocess.run(command, check=True, capture_output=True, text=True, env=environment).stdout
        items = {name: int(num) for name, num in (line.split() for line in printed.splitlines())}
        counts = {}
        for dump in pathlib.Path(folder).iterdir():
            trigger, total = None, None
            for line in dump.read_text().splitlines():
                if line.startswith("desc: Trigger: Client Request: "):
                    trigger = line.removeprefix("desc: Trigger: Client Request: ")
                elif line.startswith("summary: "):  # "totals" has what ran before the counters were zeroed too
                    total = int(line.split()[1])
            if trigger is not None:
                counts[trigger] = round(total / items[trigger], 1)
    return dict(sorted(counts.items()))


def compare(counts, committed):
    """Prints what differs; the rows that grew too much, and those without a committed figure."""
    bad = []
    for name, now in counts.items():
        before = committed.get(name)
        if before is None:
            print(f"{name:40} {now:10.1f}  no committed count")
            bad.append(name)
        elif now > before * ALLOWED_GROWTH:
            print(f"{name:40} {now:10.1f}  was {before:.1f}: grew by {100 * (now / before - 1):.1f} %")
            bad.append(name)
        elif now != before:
            print(f"{name:40} {now:10.1f}  was {before:.1f}")
    for name in committed.keys() - counts.keys():
        print(f"{name:40} committed, but no longer counted")
        bad.append(name)
    return bad


def main():
    counts = count(sys.argv[1])
    if not counts:
        sys.exit("no row was counted")
    if "--write" in sys.argv[2:]:
        COMMITTED.write_text(json.dumps(counts, indent=2) + "\n")
        print(f"{len(counts)} rows written")
        return
    bad = compare(counts, json.loads(COMMITTED.read_text()))
    print(f"{len(counts)} rows counted, {len(bad)} beyond the committed counts")
    sys.exit(1 if bad else 0)


if __name__ == "__main__":
    main()
