#!/usr/bin/env python3
"""Simulates batches of a fed-batch fermentation, good and faulty ones, and writes them as tables.

Balances of a stirred tank with feed F of substrate S_F into the volume V (Bastin & Dochain 1990, On-line Estimation and
Adaptive Control of Bioreactors, Elsevier), of biomass X, substrate S, product P and a contaminant Z, in g/l:

    dX/dt = mu X               - F/V X
    dZ/dt = mu_Z Z             - F/V Z
    dS/dt = -(mu/Y + m) X - mu_Z/Y_Z Z + F/V (S_F - S)
    dP/dt = q X                - F/V P
    dV/dt = F

with growth after Monod, slowed by the lag a of a fresh inoculum and quickened by temperature, and with a product that
much substrate inhibits (Birol, Undey & Cinar 2002, Computers and Chemical Engineering 26, 1553-1565):

    mu = mu_max a S/(K_S + S) exp(0.06 (T - 25)),   da/dt = (1 - a)/tau,   q = q_max S/(K_P + S + S^2/K_I)

Dissolved oxygen, in % of saturation, follows at once: 100 - (uptake for growth and maintenance)/kLa. Acid from growth
moves the pH a little off its set point.

Phases: inoculation lasts the hours that its recipe tells; growth ends when the substrate is nearly used up; then the
feed begins, and production lasts until harvest. There is one row for each hour, with the noise of the sensors.

    fermentation.py [FOLDER]   writes good.csv (30 batches) and new.csv (6 faulty ones and 2 good ones), and prints as
                               a table what is wrong with the faulty ones: the phase, and the hour of it, at which it
                               was put in
"""
import csv
import math
import pathlib
import random
import sys

STEP = 0.01  # h
STEPS_PER_ROW = 100
VARIABLES = ["biomass", "substrate", "product", "oxygen", "temperature", "feed", "ph"]
NOISE = {"biomass": 0.04, "substrate": 0.10, "product": 0.008, "oxygen": 0.6, "temperature": 0.08, "feed": 0.0006,
         "ph": 0.015}
DIGITS = 4

# batch: phase and hour of it, what happens, by keyword of Fault
FAULTS = {
    "late-feed": ("production", 0, "the feed starts 6 h late"),
    "temperature": ("growth", 12, "the temperature steps up by 1 degree"),
    "drift": ("production", 20, "the oxygen sensor loses 1.5 % each hour"),
    "low-inoculum": ("inoculation", 0, "half of the usual inoculum"),
    "short": ("production", 0, "growth is ended 6 h early, with substrate left"),
    "contaminated": ("growth", 8, "a contaminant grows along"),
}


class Batch:
    """The state of one batch, and the recipe by which it differs a little from others."""

    def __init__(self, source, fault=None):
        self.source, self.fault = source, fault
        self.x = 0.35 * source.gauss(1, 0.04) * (0.5 if fault == "low-inoculum" else 1)
        self.s = 15.0 * source.gauss(1, 0.015)
        self.p, self.z, self.v, self.lag = 0.0, 0.0, 100.0, 0.0
        self.growth_rate = 0.125 * source.gauss(1, 0.01)
        self.transfer = source.gauss(1, 0.02)
        self.feed_rate = 0.060 * source.gauss(1, 0.02)
        self.hours = {"inoculation": source.randint(9, 11), "production": source.randint(48, 56)}
        self.phase, self.hour = "inoculation", 0

    def is_past(self, fault):
        """Whether the fault has this batch."""
        phase, hour, _ = FAULTS[fault]
        return self.fault == fault and self.phase == phase and self.hour >= hour

    def temperature(self):
        return 26.0 if self.is_past("temperature") else 25.0

    def feed(self):
        is_late = self.is_past("late-feed") and self.hour < 6
        return self.feed_rate if self.phase == "production" and not is_late else 0.0

    def rates(self):
        """Of growth, of the contaminant's, and of the product."""
        warmth = math.exp(0.06 * (self.temperature() - 25))
        monod = self.s / (0.15 + self.s)
        product = 0.006 * self.s / (0.01 + self.s + self.s ** 2 / 0.5)
        return self.growth_rate * self.lag * monod * warmth, 0.40 * monod, product

    def uptake(self):
        """Of oxygen, in % of saturation times the usual kLa."""
        growth, contaminant, _ = self.rates()
        return (55 * growth + 1.2) * self.x + 60 * contaminant * self.z

    def advance(self):
        growth, contaminant, product = self.rates()
        feed = self.feed()
        dilution = feed / self.v
        used = (growth / 0.45 + 0.014) * self.x + contaminant / 0.4 * self.z
        self.s = max(0.0, self.s + STEP * (dilution * (400 - self.s) - used))
        self.p += STEP * (product * self.x - dilution * self.p)
        self.x += STEP * (growth - dilution) * self.x
        self.z += STEP * (contaminant - dilution) * self.z
        self.v += STEP * feed
        self.lag += STEP * (1 - self.lag) / 3

    def measured(self):
        oxygen = 100 - self.uptake() / self.transfer
        if self.is_past("drift"):
            oxygen -= 1.5 * (self.hour - FAULTS["drift"][1])
        values = {"biomass": self.x + self.z, "substrate": self.s, "product": self.p, "oxygen": oxygen,
                  "temperature": self.temperature(), "feed": self.feed(),
                  "ph": 6.0 - 0.08 * self.rates()[0] * self.x - 0.3 * self.z}
        return [self.reading(name, value) for name, value in values.items()]

    def reading(self, name, value):
        if name == "feed" and value == 0:
            return 0  # of a pump that stands still
        return round(max(0.0, value + self.source.gauss(0, NOISE[name])), DIGITS)

    def is_over(self):
        if self.phase == "growth":
            return self.s < 2.5 or (self.fault == "short" and self.hour >= 11)
        return self.hour >= self.hours[self.phase]

    def rows(self, name):
        time = 0
        for self.phase in ["inoculation", "growth", "production"]:
            self.hour = 0
            while not self.is_over():
                if self.is_past("contaminated") and self.z == 0:
                    self.z = 0.05 * self.x
                yield [f"{name}-{time:03}", name, self.phase, time] + self.measured()
                for _ in range(STEPS_PER_ROW):
                    self.advance()
                time += 1
                self.hour += 1


def write(file, batches):
    with open(file, "w", newline="") as stream:
        table = csv.writer(stream)
        table.writerow(["row", "batch", "phase", "time"] + VARIABLES)
        for name, batch in batches.items():
            table.writerows(batch.rows(name))


def main():
    folder = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else ".")
    folder.mkdir(exist_ok=True)
    source = random.Random(2002)
    write(folder / "good.csv", {f"G{number:02}": Batch(source) for number in range(1, 31)})
    new = {fault: Batch(source, fault) for fault in FAULTS}
    new.update({f"N{number}": Batch(source) for number in (1, 2)})
    write(folder / "new.csv", new)
    print(f"{'batch':14}{'phase':13}{'hour':>4}  fault")
    for name, (phase, hour, text) in FAULTS.items():
        print(f"{name:14}{phase:13}{hour:4}  {text}")


if __name__ == "__main__":
    main()
