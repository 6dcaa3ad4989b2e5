#!/usr/bin/env python3
"""Simulates a calibration of a spectrometer on fuel, and writes it as tables.

A sample is a mixture of three constituents, each with Gaussian bands between 1100 and 1500 nm. A spectrum is the sum of
their absorbances with a drifting baseline and noise. Octane number and density follow from the mixture.

    spectra.py [FOLDER]     writes calibration.csv (60 samples with octane and density) and new.csv (10 without)
"""
import csv
import math
import pathlib
import random
import sys

WAVELENGTHS = range(1100, 1501, 2)
# For each constituent the bands: centre and width in nm, height in absorbance.
CONSTITUENTS = {
    "aromatics": [(1143, 12, 0.35), (1420, 22, 0.18)],
    "paraffins": [(1194, 16, 0.42), (1395, 25, 0.30)],
    "ethanol": [(1180, 14, 0.15), (1460, 45, 0.55)],
}
OCTANE = {"aromatics": 108.0, "paraffins": 84.0, "ethanol": 113.0}
DENSITY = {"aromatics": 0.870, "paraffins": 0.700, "ethanol": 0.789}


def mixture(source):
    """Fractions that sum to 1."""
    aromatics = source.uniform(0.15, 0.45)
    ethanol = source.uniform(0.0, 0.15)
    return {"aromatics": aromatics, "paraffins": 1 - aromatics - ethanol, "ethanol": ethanol}


def absorbance(constituent, wavelength):
    return sum(height * math.exp(-0.5 * ((wavelength - centre) / width) ** 2)
               for centre, width, height in CONSTITUENTS[constituent])


def spectrum(fractions, source):
    offset = source.gauss(0.05, 0.01)
    slope = source.gauss(0.0, 0.00004)
    return [sum(part * absorbance(name, wavelength) for name, part in fractions.items())
            + offset + slope * (wavelength - 1300) + source.gauss(0, 0.001)
            for wavelength in WAVELENGTHS]


def response(values, fractions, source, error):
    return sum(part * values[name] for name, part in fractions.items()) + source.gauss(0, error)


def main():
    folder = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else ".")
    source = random.Random(1100)
    headings = [f"{wavelength}nm" for wavelength in WAVELENGTHS]
    with open(folder / "calibration.csv", "w", newline="") as file:
        table = csv.writer(file)
        table.writerow(["sample", "octane", "density"] + headings)
        for number in range(1, 61):
            fractions = mixture(source)
            octane = response(OCTANE, fractions, source, 0.2)
            density = response(DENSITY, fractions, source, 0.0005)
            values = [f"{value:.5f}" for value in spectrum(fractions, source)]
            table.writerow([f"cal{number:02}", f"{octane:.2f}", f"{density:.4f}"] + values)
    with open(folder / "new.csv", "w", newline="") as file:
        table = csv.writer(file)
        table.writerow(["sample"] + headings)
        for number in range(1, 11):
            values = [f"{value:.5f}" for value in spectrum(mixture(source), source)]
            table.writerow([f"new{number:02}"] + values)


if __name__ == "__main__":
    main()
