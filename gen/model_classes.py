"""What the printers of the model's header and sources both ask."""

from rows import shape_of


def banner(table="model/schema", template="emit_model.py"):
    """The first line of a printed file: what to edit in its place."""
    return f"// Generated from {table} by gen/{template}: edit those, not this."


def shapes(info):
    return [shape_of(row) for row in info.rows]
