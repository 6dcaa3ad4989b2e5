#!/usr/bin/python3
"""Fits the same data with this engine and with scikit-learn, in turns, and prints the ratios of the median times.

Usage: compare_fits.py path/to/fit_timer

Times go from a data set in memory to a fitted model, centring and scaling included, with each side's default
settings and all processors that it uses by itself. The results are compared with an exact fit first.
"""

import os
import statistics
import subprocess
import sys
import tempfile
import time

try:
    import numpy as np
    from sklearn.cross_decomposition import PLSRegression
    from sklearn.decomposition import PCA
except ImportError:
    sys.exit("This comparison needs scikit-learn: sudo apt-get install python3-sklearn for /usr/bin/python3")

ROWS, COLUMNS, COMPONENTS, TURNS, REPEATS = 2000, 1000, 5, 5, 3


def make_data(latent, responses):
    random = np.random.default_rng(11)
    size = COLUMNS + responses
    data = random.normal(size=(ROWS, latent)) @ random.normal(size=(latent, size))
    data += 2 * random.normal(size=(ROWS, size))
    return data.astype(np.float32).astype(np.float64)


def run_timer(timer, path, responses, result):
    sizes = (ROWS, COLUMNS, responses, COMPONENTS, REPEATS)
    lines = subprocess.run([timer, path, *map(str, sizes), result], check=True, capture_output=True, text=True).stdout
    values = np.fromfile(result)
    t = values[: ROWS * COMPONENTS].reshape(COMPONENTS, ROWS).T
    return [float(line) for line in lines.split()], t


def time_other(make, arguments):
    times = []
    for _ in range(REPEATS):
        start = time.perf_counter()
        make().fit(*arguments)
        times.append(time.perf_counter() - start)
    return times


def largest_error(t, exact):
    """The largest relative error of a score vector, signs aside."""
    turned = exact * np.sign(np.sum(t * exact, axis=0))
    return max(np.linalg.norm(t - turned, axis=0) / np.linalg.norm(turned, axis=0))


def compare(timer, folder, name, latent, responses):
    data = make_data(latent, responses)
    x, y = data[:, :COLUMNS], data[:, COLUMNS:]
    path, result = os.path.join(folder, "data"), os.path.join(folder, "result")
    data.tofile(path)
    if responses:
        exact = PLSRegression(COMPONENTS, tol=1e-20, max_iter=10000).fit(x, y).x_scores_
        make, arguments = (lambda: PLSRegression(COMPONENTS)), (x, y)
    else:
        exact = PCA(COMPONENTS, svd_solver="full").fit_transform(x)
        make, arguments = (lambda: PCA(COMPONENTS)), (x,)
    ours, others = [], []
    for _ in range(TURNS):
        times, t = run_timer(timer, path, responses, result)
        ours += times
        others += time_other(make, arguments)
    error = largest_error(t, exact)
    own, other = statistics.median(ours), statistics.median(others)
    print(f"{name:28} {own * 1e3:9.1f} ms {other * 1e3:9.1f} ms   ratio {own / other:6.3f}   error {error:.1e}")
    return error < 1e-7


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    cases = [("PLS, 1 response", 6, 1), ("PLS, 3 responses", 6, 3), ("PCA", 6, 0), ("PCA of noise", 0, 0)]
    print(f"{ROWS} x {COLUMNS}, {COMPONENTS} components{'':2} this engine  scikit-learn")
    with tempfile.TemporaryDirectory() as folder:
        agreed = [compare(sys.argv[1], folder, *case) for case in cases]
    if not all(agreed):
        sys.exit("The results do not agree.")


if __name__ == "__main__":
    main()
