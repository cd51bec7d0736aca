"""The rows of the table of bench/run."""

import statistics
import sys


def tell(text):
    print(text, file=sys.stderr, flush=True)


class Row:
    """One line of the table. Ours and baseline have one value per round. Without an allowance it is
    reported, not judged."""

    def __init__(self, name, ours, baseline, allowed, unit, at_least=False):
        self.name, self.ours, self.baseline = name, ours, baseline
        self.allowed, self.unit, self.at_least = allowed, unit, at_least

    @property
    def ratio(self):
        return statistics.median(self.ours) / statistics.median(self.baseline)

    @property
    def spread(self):
        """The interquartile range of the ratios of the rounds."""
        ratios = [a / b for a, b in zip(self.ours, self.baseline)]
        if len(ratios) < 2:
            return ratios[0], ratios[0]
        quarters = statistics.quantiles(ratios, n=4, method="inclusive")
        return quarters[0], quarters[2]

    @property
    def ok(self):
        if self.allowed is None:
            return True
        return self.ratio >= self.allowed if self.at_least else self.ratio <= self.allowed

    def cells(self):
        low, high = self.spread
        bound = "" if self.allowed is None else f"{self.allowed}"
        return [self.name, show(statistics.median(self.ours), self.unit),
                show(statistics.median(self.baseline), self.unit), f"{self.ratio:.3f}",
                f"{low:.3f} ... {high:.3f}", "at least " + bound if self.at_least else bound,
                self.verdict]

    @property
    def verdict(self):
        if self.allowed is None:
            return "reported"
        return "ok" if self.ok else "OVER"

    def record(self):
        return {"row": self.name, "unit": self.unit, "ours": self.ours, "baseline": self.baseline,
                "ratio": self.ratio, "spread": self.spread, "allowed": self.allowed,
                "at_least": self.at_least, "ok": self.ok}


class CountRow(Row):
    """A count of at most `allowed`, which may be the baseline's."""

    def __init__(self, name, count, allowed):
        super().__init__(name, [count], [], allowed, "")

    @property
    def ratio(self):
        return None

    @property
    def spread(self):
        return None

    @property
    def ok(self):
        return self.ours[0] <= self.allowed

    def cells(self):
        return [self.name, str(self.ours[0]), "", "", "", str(self.allowed),
                self.verdict]


def show(value, unit):
    """Rounds to three or four significant digits."""
    if unit == "s" and value < 0.1:
        for factor, small in ((1e3, "ms"), (1e6, "µs"), (1e9, "ns")):
            if value * factor >= 1:
                return f"{value * factor:.3g} {small}"
    return f"{value:.4g} {unit}".rstrip()


def print_table(rows):
    heads = ["row", "ours", "baseline", "ratio", "spread", "allowed", ""]
    lines = [heads] + [row.cells() for row in rows]
    widths = [max(len(line[column]) for line in lines) for column in range(len(heads))]
    lines.insert(1, ["-" * width for width in widths])
    for line in lines:
        print("| " + " | ".join(c.ljust(w) for c, w in zip(line, widths)) + " |")
