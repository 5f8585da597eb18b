# Run by `make bench-page`, through page.py: draws the plot of docs/speed.md.

from collections import namedtuple

import matplotlib
from matplotlib.figure import Figure

# A panel: its title, the titles of its axes, and its lines. The x axis is logarithmic, the y axis begins at zero.
Panel = namedtuple("Panel", "title x_title y_title series")

# A line: its name, its points, and the number of its colour.
Series = namedtuple("Series", "name points color")

COLORS = ("#0b62c4", "#6e7781", "#b35900", "#8250df", "#1a7f37")

# Text remains text. The same data always results in the same file.
SETTINGS = {
    "axes.spines.right": False, "axes.spines.top": False, "font.family": "sans-serif",
    "svg.fonttype": "none", "svg.hashsalt": "speed",
}


def draw(panels):
    """Returns a figure with the panels in a row and a legend below."""
    figure = Figure(figsize=(4 * len(panels), 3.8))
    lines = {}
    for axes, panel in zip(figure.subplots(1, len(panels), squeeze=False)[0], panels):
        for series in panel.series:
            lines[series.name], = axes.plot(*zip(*series.points), marker="o", color=COLORS[series.color])
        axes.set(title=panel.title, xlabel=panel.x_title, ylabel=panel.y_title, xscale="log", ylim=(0, None))
        axes.grid(axis="y", color="#d8dee4")
        axes.xaxis.set_major_formatter("{x:,.0f}")
        axes.minorticks_off()
    figure.legend(lines.values(), lines.keys(), loc="lower center", ncols=len(lines), frameon=False)
    figure.tight_layout(rect=(0, 0.09, 1, 1))  # the legend is below
    return figure


def save(file, description, panels):
    with matplotlib.rc_context(SETTINGS):
        draw(panels).savefig(file, format="svg", metadata={"Creator": None, "Date": None, "Title": description})
