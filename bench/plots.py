"""The plot of cost against size, as an SVG file: logarithmic both ways, a flat line is the wish."""

import math

WIDTH, HEIGHT = 760, 420
LEFT, RIGHT, TOP, BOTTOM = 60, 250, 20, 45
COLOURS = ["#1b6ca8", "#d1495b", "#3a7d44", "#8d5a97", "#e08e0b", "#4f5d75", "#00798c", "#9c6644"]


def decades(values):
    low, high = math.floor(math.log10(min(values))), math.ceil(math.log10(max(values)))
    return list(range(low, max(high, low + 1) + 1))


def write(path, series):
    """`series`: words -> {size: ns per item}."""
    x_decades = decades([size for points in series.values() for size in points])
    y_decades = decades([time for points in series.values() for time in points.values()])

    def x_of(size):
        return LEFT + (math.log10(size) - x_decades[0]) / (x_decades[-1] - x_decades[0]) * (WIDTH - LEFT - RIGHT)

    def y_of(time):
        return HEIGHT - BOTTOM - (math.log10(time) - y_decades[0]) / (y_decades[-1] - y_decades[0]) * (HEIGHT - TOP - BOTTOM)

    out = [
        f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {HEIGHT}" font-family="sans-serif" font-size="12">',
        f'<rect width="{WIDTH}" height="{HEIGHT}" fill="white"/>',
    ]
    for decade in x_decades:
        x = x_of(10**decade)
        out.append(f'<line x1="{x:.1f}" y1="{TOP}" x2="{x:.1f}" y2="{HEIGHT - BOTTOM}" stroke="#ddd"/>')
        out.append(f'<text x="{x:.1f}" y="{HEIGHT - BOTTOM + 18}" text-anchor="middle">{10**decade:,}</text>')
    for decade in y_decades:
        y = y_of(10**decade)
        out.append(f'<line x1="{LEFT}" y1="{y:.1f}" x2="{WIDTH - RIGHT}" y2="{y:.1f}" stroke="#ddd"/>')
        out.append(f'<text x="{LEFT - 6}" y="{y + 4:.1f}" text-anchor="end">{10**decade:,}</text>')
    out.append(f'<text x="{(LEFT + WIDTH - RIGHT) / 2}" y="{HEIGHT - 8}" text-anchor="middle">items</text>')
    out.append(f'<text x="14" y="{HEIGHT / 2}" transform="rotate(-90 14 {HEIGHT / 2})" text-anchor="middle">ns per item</text>')
    for number, (words, points) in enumerate(series.items()):
        colour = COLOURS[number % len(COLOURS)]
        line = " ".join(f"{x_of(size):.1f},{y_of(time):.1f}" for size, time in points.items())
        out.append(f'<polyline points="{line}" fill="none" stroke="{colour}" stroke-width="2"/>')
        out.append(f'<text x="{WIDTH - RIGHT + 12}" y="{TOP + 16 + 20 * number}" fill="{colour}">{words}</text>')
    out.append("</svg>")
    path.write_text("\n".join(out) + "\n")
