"""Line plots as SVG, side by side, that are legible on light and on dark pages."""

import math
from collections import namedtuple
from html import escape

# One panel: its title, what its axes show, and its lines. Both axes begin at the lower left corner; x is
# logarithmic, y is linear and begins at zero.
Panel = namedtuple("Panel", "title x_title y_title series")

# A line: its name, its points, and the number of its colour.
Series = namedtuple("Series", "name points color")

PANEL_WIDTH = 360
PANEL_HEIGHT = 320
LEFT, RIGHT, TOP, BOTTOM = 62, 24, 48, 56
LEGEND_HEIGHT = 44

STYLE = """
.card { fill: #ffffff } text { font: 13px sans-serif; fill: #1f2328 } .title { font-size: 15px; font-weight: bold }
.small { font-size: 12px; fill: #57606a } .grid { stroke: #d8dee4 } .axis { stroke: #57606a }
.c0 { stroke: #0b62c4; fill: #0b62c4 } .c1 { stroke: #6e7781; fill: #6e7781 } .c2 { stroke: #b35900; fill: #b35900 }
.c3 { stroke: #8250df; fill: #8250df } .c4 { stroke: #1a7f37; fill: #1a7f37 }
@media (prefers-color-scheme: dark) {
.card { fill: #161b22 } text { fill: #e6edf3 } .small { fill: #9da7b1 } .grid { stroke: #30363d }
.axis { stroke: #9da7b1 }
.c0 { stroke: #58a6ff; fill: #58a6ff } .c1 { stroke: #9da7b1; fill: #9da7b1 } .c2 { stroke: #f0883e; fill: #f0883e }
.c3 { stroke: #bc8cff; fill: #bc8cff } .c4 { stroke: #3fb950; fill: #3fb950 } }
.line { fill: none; stroke-width: 2.2; stroke-linejoin: round }
"""


def step_for(largest, count=5):
    """A round distance of grid lines that shows about `count` of them up to the largest value."""
    magnitude = 10 ** math.floor(math.log10(largest / count))
    return next(factor * magnitude for factor in (1, 2, 5, 10) if factor * magnitude * count >= largest)


def short_number(value):
    if value >= 1_000_000:
        return f"{value / 1_000_000:g}M"
    if value >= 10_000:
        return f"{value / 1000:g}k"
    return f"{value:g}"


def panel_svg(panel, left):
    points = [point for series in panel.series for point in series.points]
    low, high = (math.log10(choose(x for x, _ in points)) for choose in (min, max))
    step = step_for(max(y for _, y in points))
    top_value = step * math.ceil(max(y for _, y in points) / step)
    width, height = PANEL_WIDTH - LEFT - RIGHT, PANEL_HEIGHT - TOP - BOTTOM

    def across(x):
        return left + LEFT + (math.log10(x) - low) / (high - low) * width

    def down(y):
        return TOP + (1 - y / top_value) * height

    parts = [f'<text class="title" x="{left + LEFT}" y="26">{escape(panel.title)}</text>']
    for index in range(round(top_value / step) + 1):
        y = down(index * step)
        parts.append(f'<path class="{"grid" if index else "axis"}" d="M{left + LEFT} {y:.1f}h{width}"/>')
        parts.append(
            f'<text class="small" x="{left + LEFT - 8}" y="{y + 4:.1f}" text-anchor="end">'
            f"{short_number(round(index * step, 6))}</text>"
        )
    for power in range(math.ceil(low - 1e-9), math.floor(high + 1e-9) + 1):
        x = across(10**power)
        parts.append(f'<path class="axis" d="M{x:.1f} {TOP + height}v5"/>')
        parts.append(
            f'<text class="small" x="{x:.1f}" y="{TOP + height + 20}" text-anchor="middle">'
            f"{short_number(10**power)}</text>"
        )
    middle = left + LEFT + width / 2
    parts.append(
        f'<text class="small" x="{middle:.1f}" y="{TOP + height + 40}" text-anchor="middle">'
        f"{escape(panel.x_title)}</text>"
    )
    parts.append(f'<text class="small" x="{left + LEFT}" y="{TOP - 6}">{escape(panel.y_title)}</text>')
    for series in panel.series:
        path = "L".join(f"{across(x):.1f} {down(y):.1f}" for x, y in series.points)
        parts.append(f'<path class="c{series.color} line" d="M{path}"/>')
        parts += [
            f'<circle class="c{series.color}" cx="{across(x):.1f}" cy="{down(y):.1f}" r="3"/>'
            for x, y in series.points
        ]
    return parts


def legend_svg(names, top):
    """The names of the lines by the numbers of their colours, in a row."""
    parts = []
    left = LEFT
    for color, name in sorted(names.items()):
        parts.append(f'<path class="c{color} line" d="M{left} {top}h24"/>')
        parts.append(f'<text x="{left + 32}" y="{top + 4}">{escape(name)}</text>')
        left += 32 + 8 * len(name) + 24
    return parts


def svg(description, panels):
    """The panels in a row with one legend below."""
    width, height = PANEL_WIDTH * len(panels), PANEL_HEIGHT + LEGEND_HEIGHT
    names = {series.color: series.name for panel in panels for series in panel.series}
    parts = [
        f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" width="{width}" '
        f'height="{height}" role="img"><title>{escape(description)}</title>',
        f"<style>{STYLE}</style>",
        f'<rect class="card" width="{width}" height="{height}" rx="6"/>',
    ]
    for index, panel in enumerate(panels):
        parts += panel_svg(panel, index * PANEL_WIDTH)
    parts += legend_svg(names, PANEL_HEIGHT + LEGEND_HEIGHT / 2 - 6)
    return "\n".join([*parts, "</svg>"]) + "\n"
