#!/usr/bin/env python3
"""Reading a store of 32,000 components into pandas, beside pandas reading the same as CSV.

    PYTHONPATH=build/release/python /usr/bin/python3 python/bench_read_store.py build/release/tools/zp examples/components.csv
"""

import csv
import pathlib
import statistics
import subprocess
import sys
import tempfile
import time

import pandas

import zpbase

RECORDS = 32000
PASSES = 9


def make_store(program, table, folder):
    """A store of the table's rows, again and again under ids and names of their own, and the CSV that zp exports of it."""
    with pathlib.Path(table).open(encoding="utf-8", newline="") as file:
        head, *rows = csv.reader(line for line in file if not line.startswith("#"))
    many, store, exported = (folder / name for name in ("many.csv", "many.si", "exported.csv"))
    with many.open("w", encoding="utf-8", newline="") as file:
        writer = csv.writer(file)
        writer.writerow(head)
        for id in range(RECORDS):
            row = list(rows[id % len(rows)])
            row[head.index("id")] = id
            for text in ("name", "cas"):
                row[head.index(text)] += f" {id}"
            writer.writerow(row)
    for arguments in (("import", store, many), ("export", store, exported)):
        subprocess.run([program, "store", *arguments], check=True, stdout=subprocess.DEVNULL)
    return store, exported


def read_store(path):
    with zpbase.open(path) as store:
        return store.to_pandas()


def read_csv(path):
    return pandas.read_csv(path, index_col="id")


def main(program, table):
    with tempfile.TemporaryDirectory() as folder:
        store, exported = make_store(program, table, pathlib.Path(folder))
        works = {"store into pandas": (read_store, store), "CSV into pandas": (read_csv, exported)}
        frames = {name: work(path) for name, (work, path) in works.items()}
        ours, theirs = frames.values()
        assert ours.shape == theirs.shape and list(ours.columns) == list(theirs.columns), "the tables differ"
        times = {name: [] for name in works}
        for _ in range(PASSES):
            for name, (work, path) in works.items():
                start = time.process_time()
                work(path)
                times[name].append(time.process_time() - start)
    print(f"{ours.shape[0]} components, {ours.shape[1]} columns, {PASSES} passes")
    for name, each in times.items():
        middle = statistics.median(each)
        spread = (max(each) - min(each)) / middle
        print(f"{name}: median {middle * 1000:.0f} ms, spread {spread:.0%}")
    one, other = (statistics.median(each) for each in times.values())
    print(f"ratio {one / other:.2f}")


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit("usage: bench_read_store.py ZP TABLE")
    main(*sys.argv[1:])
