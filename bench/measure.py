"""Times the rows of every benchmark executable, taking turns, and writes docs/performance.md and its plots.

    measure.py BUILD_FOLDER [ROUNDS]

Each round runs every executable once over all of its rows; a figure is the median of the rounds. Executables take turns,
so that a slow minute of the machine falls on all of them.
"""

import datetime
import json
import os
import pathlib
import platform
import statistics
import subprocess
import sys
import tempfile

import plots

ROOT = pathlib.Path(__file__).resolve().parent.parent
PAGE = ROOT / "docs" / "performance.md"
OURS = "pkider"
MEMORY = "memory"
MIN_TIME = "0.05"  # seconds a row and round

PEERS = {
    "mbedtls": "mbedTLS",
    "openssl": "OpenSSL",
    "boringssl": "BoringSSL",
    "gnutls": "GnuTLS",
    "ksba": "libksba",
    "tasn1": "libtasn1",
    "botan": "Botan",
    "nss": "NSS",
    "wolfssl": "wolfSSL",
}

# Row, what it is in words (per item), and the ratio (best peer / ours) that it is to reach.
JOBS = [
    ("der/walk", "walk every element of the bundle's certificates, per element", 1.7),
    ("oid/from_text", "OID text to contents", 2.2),
    ("oid/to_text", "OID contents to text", 8),
    ("oid/find_by_contents", "find an attribute type by contents", 4.5),
    ("oid/find_by_short_name", "find an attribute type by short name", 7),
    ("alg/from_oid", "algorithm from OID contents", 7),
    ("dn/print", "print a Name", 9),
    ("dn/encode", "encode a Name", 4.6),
    ("dn/normalize", "normalise a Name", 6.7),
    ("alg/public_key", "SubjectPublicKeyInfo", 3.5),
    ("alg/rsa_public_key", "SubjectPublicKeyInfo with the RSA key", 2.8),
    ("alg/dsa_value", "DSA value", 3.6),
    ("alg/ike_algorithm", "IKE identifier to algorithm", 4.1),
    ("alg/digest_info_build", "DigestInfo, build", 1.3),
    ("alg/digest_info_read", "DigestInfo, read", 3.4),
    ("pkcs8/read", "PKCS#8 private key, read", 4),
    ("pkcs8/write", "PKCS#8 private key, write", 6.7),
    ("pkcs8/encrypted_read", "PKCS#8 encrypted private key, read", 3.2),
    ("pkcs8/encrypted_write", "PKCS#8 encrypted private key, write", 4.7),
    ("pkcs12/read/1000", "PKCS#12 of 1,000 certificates, read, per certificate", 1.8),
    ("pkcs12/read/10000", "PKCS#12 of 10,000 certificates, read, per certificate", 1.6),
    ("pkcs12/write/1000", "PKCS#12 of 1,000 certificates, write, per certificate", 2.2),
    ("pkcs12/write/10000", "PKCS#12 of 10,000 certificates, write, per certificate", 2.2),
    ("dn/print_rdns/10", "print a Name of 10 RDNs, per RDN", 13),
    ("dn/print_rdns/10000", "print a Name of 10,000 RDNs, per RDN", 13),
    ("dn/encode_rdns/10", "encode a Name of 10 RDNs, per RDN", 11),
    ("dn/encode_rdns/10000", "encode a Name of 10,000 RDNs, per RDN", 11),
]

REFUSALS = [
    ("der/walk_refused", "a certificate without its last byte"),
    ("oid/from_text_refused", "OID text with a sign after it"),
    ("dn/print_refused", "a Name without its last byte"),
    ("dn/encode_refused", "a line with an unknown type at its end"),
    ("alg/public_key_refused", "a SubjectPublicKeyInfo without its last byte"),
    ("pkcs8/read_refused", "a private key without its last byte"),
]

# Series, what it is in words (per item), and how much dearer an item may be at 10,000 and 100,000 than at 100.
SERIES = [
    ("dn/print_rdns", "print RDNs", 1.2),
    ("dn/print_rdns_reversed", "print RDNs, reversed", 1.2),
    ("dn/print_one_set", "print members of one SET", 1.2),
    ("dn/encode_rdns", "encode RDNs", 1.2),
    ("dn/encode_one_set", "encode members of one SET", 1.2),
    ("oid/parse_map", "parse map lines in any order", 1.2),
    ("pkcs12/read", "read certificates of a PKCS#12 file", 1.35),
    ("pkcs12/write", "write certificates of a PKCS#12 file", 1.2),
]
REVERSED_AT_MOST = 1.3  # of the unreversed

# Series in which memory alone grows as well, and what is done with it there.
MEMORY_SERIES = [
    ("pkcs12/read", "one byte of each 64 of that file read, and nothing else"),
    ("pkcs12/write", "the certificates copied one after the other, and nothing else"),
]


def run(program):
    """Row -> (ns per item, answer) of one run of an executable."""
    command = [program, f"--benchmark_min_time={MIN_TIME}", "--benchmark_format=json"]
    result = subprocess.run(command, check=True, capture_output=True, text=True)
    rows = json.loads(result.stdout)["benchmarks"]
    return {row["name"]: (row["cpu_time"] / row["items"], int(row["answer"])) for row in rows}


def measure(folder, rounds):
    """Library -> row -> median ns per item; and library -> row -> answer."""
    programs = {name: folder / "bench" / f"bench_{name}" for name in (OURS, MEMORY, *PEERS)}
    programs = {name: path for name, path in programs.items() if path.exists()}
    times, answers = {}, {}
    for number in range(rounds):
        for name, path in programs.items():
            print(f"round {number + 1} of {rounds}: {name}", file=sys.stderr)
            for row, (time, answer) in run(path).items():
                times.setdefault(name, {}).setdefault(row, []).append(time)
                answers.setdefault(name, {})[row] = answer
    medians = {name: {row: statistics.median(all_times) for row, all_times in rows.items()} for name, rows in times.items()}
    return medians, answers


def check_answers(answers):
    """Libraries that do the same work must find the same; 0 says that a result differs by design."""
    compared = 0
    for name in answers.keys() - {OURS}:
        for row, answer in answers[name].items():
            ours = answers[OURS].get(row, 0)
            if answer == 0 or ours == 0:
                continue
            compared += 1
            if answer != ours:
                sys.exit(f"{row}: {name} found {answer}, {OURS} {ours}")
    return compared


def best_peer(medians, row):
    times = [(rows[row], PEERS[name]) for name, rows in medians.items() if name in PEERS and row in rows]
    return min(times) if times else None


def job_table(medians):
    yield "| job | pkider, ns | best peer, ns | ratio | to reach | |"
    yield "|---|--:|--:|--:|--:|---|"
    for row, words, wanted in JOBS:
        ours = medians[OURS][row]
        best = best_peer(medians, row)
        if best is None:
            yield f"| {words} | {ours:.1f} | | | {wanted:g} | no peer does it |"
            continue
        ratio = best[0] / ours
        verdict = "reached" if ratio >= wanted else "**short**"
        yield f"| {words} | {ours:.1f} | {best[1]} {best[0]:.1f} | {ratio:.1f} | {wanted:g} | {verdict} |"


def peer_table(medians):
    names = [name for name in PEERS if name in medians]
    yield "| job | pkider | " + " | ".join(PEERS[name] for name in names) + " |"
    yield "|---|" + "--:|" * (len(names) + 1)
    for row, words, _ in JOBS:
        cells = [f"{medians[name][row]:.1f}" if row in medians[name] else "" for name in names]
        yield f"| {words} | {medians[OURS][row]:.1f} | " + " | ".join(cells) + " |"


def series_of(rows, prefix):
    """Size -> ns per item."""
    found = {int(row.rpartition("/")[2]): time for row, time in rows.items() if row.rpartition("/")[0] == prefix}
    return dict(sorted(found.items()))


def growth_cells(sizes):
    """A cell a size, and how much dearer an item is in the larger files than at 100."""
    cells = [f"{sizes[size]:.1f}" if size in sizes else "" for size in (10, 100, 1_000, 10_000, 100_000)]
    growth = max(sizes[10_000], sizes[100_000]) / sizes[100]
    return " | ".join(cells) + f" | {growth:.2f}", growth


def growth_table(medians):
    yield "| job | 10 | 100 | 1,000 | 10,000 | 100,000 | largest of the last two / at 100 | at most | |"
    yield "|---|--:|--:|--:|--:|--:|--:|--:|---|"
    for prefix, words, allowed in SERIES:
        cells, growth = growth_cells(series_of(medians[OURS], prefix))
        verdict = "reached" if growth <= allowed else "**short**"
        yield f"| {words} | {cells} | {allowed:g} | {verdict} |"
    for prefix, words in MEMORY_SERIES:
        cells, _ = growth_cells(series_of(medians[MEMORY], prefix))
        yield f"| *{words}* | {cells} | | |"


def reversed_line(medians):
    forward, backward = (series_of(medians[OURS], prefix) for prefix in ("dn/print_rdns", "dn/print_rdns_reversed"))
    largest = max(backward[size] / forward[size] for size in forward)
    verdict = "reached" if largest <= REVERSED_AT_MOST else "**short**"
    return f"A reversed Name costs at most {largest:.2f} times the unreversed one (to reach: {REVERSED_AT_MOST:g}; {verdict})."


def refusal_table(medians):
    yield "| refused | ns |"
    yield "|---|--:|"
    for row, words in REFUSALS:
        yield f"| {words} | {medians[OURS][row]:.1f} |"


def stripped_kilobytes(library):
    with tempfile.NamedTemporaryFile() as stripped:
        subprocess.run(["strip", "-o", stripped.name, library], check=True)
        return os.path.getsize(stripped.name) / 1000


def load_lines(folder):
    program = folder / "bench" / "bench_load"
    results = json.loads(subprocess.run([program], check=True, capture_output=True, text=True).stdout)
    yield (
        f"Loading the shared library costs {results['library_us']:.1f} µs, an empty library {results['empty_us']:.1f} µs: "
        f"{results['library_us'] - results['empty_us']:.1f} µs more (to reach: 20). It makes "
        f"{results['allocations']} allocations of its own while it is loaded. Stripped, it has "
        f"{stripped_kilobytes(folder / 'libpkider.so'):.0f} KB (to reach: 150), and the C interface, `libpkider_c.so` with the "
        f"library inside, {stripped_kilobytes(folder / 'libpkider_c.so'):.0f} KB."
    )


def processor():
    for line in pathlib.Path("/proc/cpuinfo").read_text().splitlines():
        if line.startswith("model name"):
            return line.partition(":")[2].strip()
    return platform.machine()


def page(medians, compared, rounds, folder):
    compiler = subprocess.run(["g++", "--version"], capture_output=True, text=True, check=True).stdout.splitlines()[0]
    yield from (
        "# Performance",
        "",
        "Written by `scripts/bench`. Absolute figures move with the machine and the hour and are unstable; the ratios count.",
        "",
        f"Machine: {processor()}, {os.cpu_count()} cores, {platform.system()} {platform.release()}; {compiler}, preset `release`.",
        f"Date: {datetime.date.today()}. Median of {rounds} rounds in which the executables take turns; processor time per item.",
        f"{compared} results of peers that do the same work were compared with ours: all equal.",
        "",
        "## Beside the best peer",
        "",
    )
    yield from job_table(medians)
    yield from ("", "## All peers, ns per item", "")
    yield from peer_table(medians)
    yield from ("", "## Growth, ns per item", "")
    yield from growth_table(medians)
    yield from ("", reversed_line(medians), "", "![Cost per item against size](performance.svg)", "", "## Refused input", "")
    yield from refusal_table(medians)
    yield from ("", "## Load", "")
    yield from load_lines(folder)


def kept_part():
    """What follows the figures was written by hand and stays."""
    mark = "\n<!-- written by hand from here on -->\n"
    text = PAGE.read_text() if PAGE.exists() else ""
    return mark + text.partition(mark)[2]


def main():
    folder = pathlib.Path(sys.argv[1])
    rounds = int(sys.argv[2]) if len(sys.argv) > 2 else 5
    medians, answers = measure(folder, rounds)
    compared = check_answers(answers)
    PAGE.write_text("\n".join(page(medians, compared, rounds, folder)) + "\n" + kept_part())
    plots.write(PAGE.with_suffix(".svg"), {words: series_of(medians[OURS], prefix) for prefix, words, _ in SERIES})
    print("\n".join(job_table(medians)))
    print("\n".join(growth_table(medians)))
    print(reversed_line(medians))


if __name__ == "__main__":
    main()
