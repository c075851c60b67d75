#!/usr/bin/env python3
"""Conversion benchmark, process against process: `palvex convert -o` against the Python
csv + json reference (csv_to_mgjson.py) on the same numeric CSV file; wall time and peak
resident memory of each, and the library's time at 10x the rows (linearity).

    python3 bench/convert_vs_python.py BUILD_DIR [ROWS] [COLUMNS]
"""
import os
import random
import subprocess
import sys
import tempfile
import time

HERE = os.path.dirname(os.path.abspath(__file__))


def make_csv(path, rows, columns):
    rng = random.Random(7)
    with open(path, "w") as f:
        f.write(",".join("sensor%d" % c for c in range(columns)) + "\n")
        for _ in range(rows):
            f.write(",".join("%.3f" % rng.uniform(-500, 500) for _ in range(columns)) + "\n")


def run(command):
    start = time.perf_counter()
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    elapsed = time.perf_counter() - start
    if status != 0:
        sys.exit("failed: %s" % " ".join(command))
    return elapsed, usage.ru_maxrss / 1024.0  # MB


def main():
    build = sys.argv[1]
    rows = int(sys.argv[2]) if len(sys.argv) > 2 else 100000
    columns = int(sys.argv[3]) if len(sys.argv) > 3 else 10
    palvex = os.path.join(build, "palvex")
    with tempfile.TemporaryDirectory() as work:
        source = os.path.join(work, "table.csv")
        make_csv(source, rows, columns)
        size = os.path.getsize(source) / 1e6
        ours = run([palvex, "convert", "-o", os.path.join(work, "ours.mgjson"), source])
        theirs = run([sys.executable, os.path.join(HERE, "csv_to_mgjson.py"), source, os.path.join(work, "ref.mgjson")])
        print("%d rows x %d columns (%.1f MB)" % (rows, columns, size))
        print("  palvex convert : %6.2f s  %7.1f MB peak" % ours)
        print("  python csv+json: %6.2f s  %7.1f MB peak" % theirs)
        print("  speed-up %.1fx, memory ratio %.2f" % (theirs[0] / ours[0], ours[1] / theirs[1]))
        small = os.path.join(work, "small.csv")
        make_csv(small, rows // 10, columns)
        tenth = run([palvex, "convert", "-o", os.path.join(work, "small.mgjson"), small])
        print("  linearity: %d rows %.2f s, %d rows %.2f s (x%.1f)" % (rows // 10, tenth[0], rows, ours[0], ours[0] / tenth[0]))


if __name__ == "__main__":
    main()
