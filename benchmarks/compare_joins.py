#!/usr/bin/python3
"""Joins series that have half of their items in common with this library and with pandas, and prints the ratios.

Usage: compare_joins.py path/to/build_benchmark

Both sides start from data in memory. Here a selection of series of two data sets becomes a table; there a Series for
each, with the identifiers of its data set as the index that it shares with the others, is put beside the others. The
two take turns; the best time of each counts.
"""

import json
import subprocess
import sys
import time

try:
    import numpy as np
    import pandas as pd
except ImportError:
    sys.exit("This comparison needs pandas: sudo apt-get install python3-pandas for /usr/bin/python3")

TURNS = 3


def milliseconds_here(benchmark, series, items):
    name = f"HalfCommon/{series}x{items}/manual_time$"
    command = [benchmark, f"--benchmark_filter={name}", "--benchmark_format=json", "--benchmark_min_time=0.3"]
    result = json.loads(subprocess.run(command, check=True, capture_output=True, text=True).stdout)
    return result["benchmarks"][0]["real_time"]


def milliseconds_of_pandas(series, items):
    identifiers = [f"o{i}" for i in range(items + items // 2)]
    indexes = pd.Index(identifiers[:items]), pd.Index(identifiers[items // 2 :])
    random = np.random.default_rng(5)
    columns = [
        pd.Series(random.random(items, dtype=np.float32), index=indexes[2 * number // series]) for number in range(series)
    ]
    start = time.perf_counter()
    joined = pd.concat(columns, axis=1, join="inner")
    spent = time.perf_counter() - start
    assert joined.shape == (items - items // 2, series)
    return 1e3 * spent


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    print("series x items        here      pandas   ratio")
    for series, items in ((20, 1_000_000), (20, 10_000), (8000, 1000)):
        here, other = [], []
        for _ in range(TURNS):
            here.append(milliseconds_here(sys.argv[1], series, items))
            other.append(milliseconds_of_pandas(series, items))
        print(f"{series:6} x {items:<9} {min(here):9.3f} ms {min(other):9.1f} ms {min(other) / min(here):7.1f}")


if __name__ == "__main__":
    main()
