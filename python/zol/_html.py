"""What a notebook shows of an object: its values, swatches and curves."""

from __future__ import annotations

from html import escape

from ._object import List, Object, SpectrumParts

_MOST = 60  # entries of a list
_WIDTH, _HEIGHT = 320, 120


def object_html(shown):
    if shown.is_removed:
        return f"<code>{escape(repr(shown))}</code>"
    parts = [f"<b>{escape(type(shown).__name__)}</b>"]
    name = type(shown).__name__
    if name == "NamedColor":
        parts.append(swatch(shown))
    if isinstance(shown, SpectrumParts):
        parts.append(curve(shown.wavelengths, shown.values))
    parts.append(_values(shown))
    if name == "Document":
        parts.append(_swatches(shown.every_color()))
    elif name == "ColorSet":
        parts.append(_swatches(shown.colors))
    elif name == "NamedColor":
        parts += [curve(space.wavelengths, space.values) for space in shown.spaces
                  if isinstance(space, SpectrumParts)]
    return "<div>" + "".join(parts) + "</div>"


def list_html(shown):
    if len(shown) and type(shown[0]).__name__ == "NamedColor":
        return f"<div>{len(shown)} colours<br>{_swatches(shown)}</div>"
    rows = "".join(f"<li>{escape(repr(one))}</li>" for one in shown[:_MOST])
    more = f"<li>and {len(shown) - _MOST} more</li>" if len(shown) > _MOST else ""
    return f"<ol start='0'>{rows}{more}</ol>"


def _values(shown):
    rows = []
    for name, attribute in shown.attributes().items():
        if attribute.is_list:
            value = getattr(shown, name)
            text = f"{len(value)} entries" if len(value) else ""
        elif not attribute.is_column:
            continue
        else:
            try:
                value = getattr(shown, name)
            except ValueError:  # a date that no calendar has
                value = getattr(shown, name + "_exact")
            text = "" if value is None else str(getattr(value, "value", value))
        if text:
            rows.append(f"<tr><td style='text-align:left'>{name}</td>"
                        f"<td style='text-align:left'>{escape(text[:200])}</td></tr>")
    return f"<table>{''.join(rows)}</table>" if rows else ""


def hex_of(color):
    """'#rrggbb' for a colour, or None and why there is none."""
    try:
        from . import color as computed
    except ImportError:
        return None, "the library of colour was left out"
    return computed.shown(color)


def swatch(color, size=48):
    found, reason = hex_of(color)
    title = escape(f"{color.name or ''} {found or reason}", quote=True)
    fill = f"background:{found}" if found else \
        "background:repeating-linear-gradient(45deg,#ccc 0 4px,#fff 4px 8px)"
    return (f"<span title='{title}' style='display:inline-block;width:{size}px;height:{size}px;"
            f"border:1px solid #888;margin:1px;{fill}'></span>")


def _swatches(colors):
    shown, more = [], 0
    for number, color in enumerate(colors):
        if number < _MOST:
            shown.append(swatch(color, 24))
        else:
            more += 1
    return f"<div>{''.join(shown)}{f' and {more} more' if more else ''}</div>" if shown else ""


def curve(wavelengths, values):
    """A spectrum as a picture."""
    points = sorted((w, v) for w, v in zip(wavelengths, values) if w == w and v == v)
    if len(points) < 2:
        return ""
    low, high = points[0][0], points[-1][0]
    top = max(1.0 if max(v for _, v in points) <= 1 else 0.0, max(v for _, v in points))
    bottom = min(0.0, min(v for _, v in points))
    if high <= low or top <= bottom:
        return ""

    def at(wavelength, value):
        x = (wavelength - low) / (high - low) * _WIDTH
        return f"{x:.1f},{(top - value) / (top - bottom) * _HEIGHT:.1f}"

    line = " ".join(at(w, v) for w, v in points)
    return (f"<div><svg width='{_WIDTH}' height='{_HEIGHT + 16}' role='img' "
            f"aria-label='spectrum from {low:g} to {high:g} nm'>"
            f"<polyline points='{line}' fill='none' stroke='#36c' stroke-width='1.5'/>"
            f"<rect width='{_WIDTH}' height='{_HEIGHT}' fill='none' stroke='#888'/>"
            f"<text x='0' y='{_HEIGHT + 13}' font-size='11'>{low:g} nm</text>"
            f"<text x='{_WIDTH}' y='{_HEIGHT + 13}' font-size='11' text-anchor='end'>{high:g} nm"
            "</text></svg></div>")
