"""Charts of ratios of time, as SVG for columns from 360 pixels wide up."""

import math
import textwrap
from xml.sax.saxutils import escape

COLOURS = {"nlohmann": "#4c86c6", "RapidJSON": "#cf7a22", "Boost.JSON": "#3f9a56",
           "JsonCpp": "#a070c0"}
# In units of the drawing, which are pixels in a column of its width.
WIDTH, SHOWN_WIDTH, MARGIN = 360, 480, 10
TEXT, TITLE = 12, 15
PLOT_LEFT, PLOT_RIGHT = 136, 304
LABEL_LETTERS = 16
LANE, BAR, GAP, HEADING, LINE = 6, 5, 10, 24, 14
LEAST_RANGE, GREATEST_RANGE = 2, 5  # powers of two to each side of 1


def text_width(text, size=TEXT):
    """The greatest width in common fonts, whose letters are on average 0.6 of the font size wide."""
    return 0.6 * size * len(text)


def ratio_text(ratio):
    return f"{ratio:.0f}" if ratio >= 99.5 else f"{ratio:.1f}" if ratio >= 9.95 else f"{ratio:.2f}"


def label_lines(label):
    """The lines of a label: at most two; longer labels are cut."""
    lines = textwrap.wrap(label, LABEL_LETTERS)
    return lines if len(lines) <= 2 else [lines[0], lines[1][:LABEL_LETTERS - 1] + "…"]


class Axis:
    """A logarithmic axis, as short as the ratios allow. Ratios beyond it are drawn at its ends."""

    def __init__(self, ratios):
        powers = [math.log2(ratio) for ratio in ratios]
        self.low = -min(max(math.ceil(-min(powers)), LEAST_RANGE), GREATEST_RANGE)
        self.high = min(max(math.ceil(max(powers)), LEAST_RANGE), GREATEST_RANGE)

    def at(self, power):
        return PLOT_LEFT + (PLOT_RIGHT - PLOT_LEFT) * (power - self.low) / (self.high - self.low)

    def position(self, ratio):
        return self.at(min(max(math.log2(ratio), self.low), self.high))

    def is_beyond(self, ratio):
        return not self.low <= math.log2(ratio) <= self.high

    def ticks(self):
        """The labels and positions of the ticks: as many as fit, and always 1."""
        step = 1
        while self.at(step) - self.at(0) < text_width("1/16") + 4:
            step += 1
        powers = [power for power in range(self.low, self.high + 1) if power % step == 0]
        return [(f"1/{2 ** -power}" if power < 0 else str(2 ** power), self.at(power))
                for power in powers]


def text(content, x, y, **attributes):
    extra = "".join(f' {name.rstrip("_").replace("_", "-")}="{value}"'
                    for name, value in attributes.items())
    return f'<text x="{x:g}" y="{y:g}"{extra}>{escape(content)}</text>'


def bar(axis, ratio, y, colour):
    """A bar from 1 to the ratio, with a tip if the ratio lies beyond the axis."""
    begin, end = sorted([axis.position(1), axis.position(ratio)])
    drawn = [f'<rect x="{begin:.1f}" y="{y:g}" width="{max(end - begin, 1):.1f}" height="{BAR}" '
             f'fill="{colour}"/>']
    if axis.is_beyond(ratio):
        edge, tip = (end, end + 5) if ratio > 1 else (begin, begin - 5)
        drawn.append(f'<path d="M{edge:.1f} {y - 1:g}L{tip:.1f} {y + BAR / 2:g}L{edge:.1f} '
                     f'{y + BAR + 1:g}z" fill="{colour}"/>')
    return drawn


def legend(peers, y):
    drawn, x = [], MARGIN
    for peer in peers:
        drawn += [f'<rect x="{x:g}" y="{y - 9:g}" width="10" height="10" fill="{COLOURS[peer]}"/>',
                  text(peer, x + 14, y)]
        x += 14 + text_width(peer) + 8
    return drawn


def chart(title, rows):
    """Draws rows (task, subject, {peer: ratio of our time to its time}); rows of a task together."""
    peers = [peer for peer in COLOURS if any(peer in ratios for _, _, ratios in rows)]
    axis = Axis([ratio for _, _, ratios in rows for ratio in ratios.values()])
    out = [text(title, MARGIN, 22, class_="title"),
           text("Time of foundation::json / time of another.", MARGIN, 42),
           text("Left of 1: foundation::json takes less time.", MARGIN, 58),
           text("Numbers: its time / that of the fastest other.", MARGIN, 74),
           *legend(peers, 96)]
    top, y, task = 122, 126, None
    for row_task, subject, ratios in rows:
        if row_task != task:
            task = row_task
            out.append(text(task, MARGIN, y + 14, class_="task"))
            y += HEADING
        lines = label_lines(subject)
        height = max(len(peers) * LANE, len(lines) * LINE)
        first = y + height / 2 - len(lines) * LINE / 2 + LINE - 3
        for number, line in enumerate(lines):
            out.append(text(line, MARGIN + 4, first + number * LINE))
        for number, peer in enumerate(peers):
            if peer in ratios:
                lane = y + height / 2 + (number - len(peers) / 2) * LANE
                out += bar(axis, ratios[peer], lane, COLOURS[peer])
        out.append(text(ratio_text(max(ratios.values())), WIDTH - MARGIN, y + height / 2 + 4,
                        text_anchor="end"))
        y += height + GAP

    grid = []
    for label, x in axis.ticks():
        grid += [f'<line class="{"same" if label == "1" else "grid"}" x1="{x:.1f}" y1="{top}" '
                 f'x2="{x:.1f}" y2="{y:g}"/>',
                 text(label, round(x, 1), top - 5, text_anchor="middle")]
    height = y + 8
    return "\n".join([
        f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {height:g}" '
        f'width="{SHOWN_WIDTH}" height="{height * SHOWN_WIDTH / WIDTH:g}" role="img" '
        'aria-labelledby="title">',
        f'<title id="title">{escape(title)}: time of foundation::json divided by that of other '
        "libraries</title>",
        "<style>",
        f"text {{ font: {TEXT}px system-ui, sans-serif; fill: #1f2328 }}",
        f".title {{ font-size: {TITLE}px; font-weight: 600 }} .task {{ font-weight: 600 }}",
        ".grid { stroke: #d0d7de } .same { stroke: #1f2328 }",
        "@media (prefers-color-scheme: dark) {",
        "text { fill: #e6edf3 } .grid { stroke: #30363d } .same { stroke: #e6edf3 } }",
        "</style>",
        *grid, *out, "</svg>", ""])
