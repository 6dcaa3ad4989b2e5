#!/usr/bin/env python3
"""Simulates a process that answers late, and writes it as a table.

Chips go through a digester: what is fed shows in the kappa number of the pulp after 3 to 5 rows of the table, the steam
after one. The density of the liquor does nothing.

    mill.py [FOLDER]     writes mill.csv (400 rows)
"""
import csv
import pathlib
import random
import sys

ROWS = 400
# Of each variable: level, deviation, how much of a deviation is left in the next row.
VARIABLES = {"feed": (100, 5, 0.7), "steam": (20, 1, 0.5), "density": (1.1, 0.02, 0.6)}
# Kappa for one deviation of a variable, so many rows later.
EFFECTS = {"feed": {3: 1.5, 4: 0.9, 5: 0.4}, "steam": {1: -1.2}}


def series(memory, source):
    values = [source.gauss(0, 1)]
    while len(values) < ROWS:
        values.append(memory * values[-1] + source.gauss(0, 1))
    return values


def main(folder):
    source = random.Random(3)
    process = {name: series(memory, source) for name, (_, _, memory) in VARIABLES.items()}
    with open(folder / "mill.csv", "w", newline="") as file:
        table = csv.writer(file)
        table.writerow(["row", *VARIABLES, "kappa"])
        for i in range(ROWS):
            kappa = 50 + source.gauss(0, 0.3) + sum(effect * process[name][i - lag]
                                                    for name, lags in EFFECTS.items()
                                                    for lag, effect in lags.items() if i >= lag)
            values = [f"{level + deviation * process[name][i]:.4f}"
                      for name, (level, deviation, _) in VARIABLES.items()]
            table.writerow([f"r{i + 1:03}", *values, f"{kappa:.3f}"])


if __name__ == "__main__":
    target = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else ".")
    target.mkdir(parents=True, exist_ok=True)
    main(target)
