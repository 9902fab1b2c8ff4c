"""The drawing of bench/informe: bars and lines as SVG, with what it says in words beside each."""
from html import escape
from math import log

from medidas import number

MODULO, MOTOR, QT = "#3b7dc4", "#8a94a3", "#d9822b"
INK, FAINT = "#222a35", "#c9d0d9"
WIDTH, HEIGHT = 960, 800


def text(x, y, words, size=13, anchor="start", more=""):
    return (f'<text x="{x:.1f}" y="{y:.1f}" font-size="{size}" text-anchor="{anchor}" fill="{INK}"{more}>'
            f"{escape(words)}</text>")


def line(x1, y1, x2, y2, colour=FAINT, width=1.0, more=""):
    return (f'<line x1="{x1:.1f}" y1="{y1:.1f}" x2="{x2:.1f}" y2="{y2:.1f}" stroke="{colour}" '
            f'stroke-width="{width}"{more}/>')


def heading(x, y, words, under):
    return [text(x, y, words, 16, more=' font-weight="bold"'), text(x, y + 19, under, 12)]


def bars(x, y, width, names, entries, mark=None):
    """A row for each (name, sample, colour): the median as a bar, the middle half of the repetitions as a whisker."""
    step, thick = 30, 18
    room = width - names - 60
    most = max([sample.high for _, sample, _ in entries] + [mark or 0])
    parts = []
    if mark:
        at = x + names + room * mark / most
        parts.append(line(at, y - 4, at, y + step * len(entries), INK, 1, ' stroke-dasharray="4 3"'))
    for row, (name, sample, colour) in enumerate(entries):
        top, left = y + row * step, x + names
        middle = top + thick / 2
        ends = [left + room * value / most for value in (sample.low, sample.median, sample.high)]
        parts += [text(left - 8, middle + 4.5, name, 13, "end"),
                  f'<rect x="{left}" y="{top:.1f}" width="{ends[1] - left:.1f}" height="{thick}" fill="{colour}"/>',
                  line(ends[0], middle, ends[2], middle, INK, 1.5),
                  text(max(ends[1:]) + 6, middle + 4.5, number(sample.median), 13,
                       more=' paint-order="stroke" stroke="#ffffff" stroke-width="5"')]
    return parts


def curve(x, y, width, height, points, across, unit):
    """(count, sample) on a logarithmic scale, from zero up; the names of both scales stand beside them."""
    counts = [count for count, _ in points]
    most = max(sample.high for _, sample in points) * 1.15

    def right(count):
        return x + width * (log(count) - log(counts[0])) / (log(counts[-1]) - log(counts[0]))

    def up(value):
        return y + height * (1 - value / most)
    parts = [line(x, y + height, x + width, y + height, INK), text(x + width / 2, y + height + 38, across, 12, "middle"),
             text(x - 14, y - 6, unit, 12)]
    path = " ".join(f"{right(count):.1f},{up(sample.median):.1f}" for count, sample in points)
    parts.append(f'<polyline points="{path}" fill="none" stroke="{MODULO}" stroke-width="2"/>')
    for count, sample in points:
        at = right(count)
        parts += [line(at, y + height, at, y + height + 5, INK),
                  text(at, y + height + 20, number(count) if count >= 1000 else str(count), 12, "middle"),
                  line(at, up(sample.low), at, up(sample.high), INK, 1.5),
                  f'<circle cx="{at:.1f}" cy="{up(sample.median):.1f}" r="4" fill="{MODULO}"/>',
                  text(at, up(sample.high) - 8, number(sample.median), 12, "middle")]
    return parts


def figura(quotients, peers, guard, tries):
    parts = heading(30, 36, "El módulo frente al motor solo, con las mismas instrucciones",
                    "Cociente de tiempos de procesador; la línea discontinua es el motor solo. Menos es mejor.")
    parts += bars(30, 72, 900, 330, [(name, sample, MODULO) for name, sample in quotients], mark=1)
    parts += heading(30, 330, "Cambiar una fila: módulo, motor y Qt",
                     "Microsegundos de procesador, sin esperar al disco. Menos es mejor.")
    parts += bars(30, 366, 900, 330, peers)
    parts += heading(30, 530, "Guarda de borrado", "Lo que tarda según las filas que apuntan a la que se borra.")
    parts += curve(60, 595, 350, 130, guard, "filas que la consultan", "µs")
    parts += heading(520, 530, "Claves entre muchos puestos", "Todos crean filas de la misma tabla sin parar.")
    parts += curve(550, 595, 350, 130, tries, "puestos", "intentos por fila")
    return (f'<svg xmlns="http://www.w3.org/2000/svg" width="{WIDTH}" height="{HEIGHT}" viewBox="0 0 {WIDTH} {HEIGHT}" '
            f'font-family="DejaVu Sans, Verdana, sans-serif">\n<title>Rendimiento del módulo</title>\n'
            f'<rect width="{WIDTH}" height="{HEIGHT}" fill="#ffffff"/>\n' + "\n".join(parts) + "\n</svg>\n")
