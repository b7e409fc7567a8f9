"""What the printers of the model's header and sources both ask about a class."""

from rows import shape_of


def banner(table="model/schema", template="emit_model.py"):
    """The first line of a printed file: what to edit in its place."""
    return f"// Generated from {table} by gen/{template}: edit those, not this."


def shapes(info):
    return [shape_of(row) for row in info.rows]


# Which of the steps a class has of its own; the others it inherits.

def overrides_write_attributes(info):
    return not info.is_wrapper and (bool(info.attributes) or info.base is None)


def overrides_read_attributes(info):
    return info.nillable or (not info.is_wrapper and (bool(info.attributes) or info.base is None))


def overrides_read_plain(info):
    return not info.is_wrapper and not info.is_simple and (bool(info.attributes)
                                                           or info.base is None)


def overrides_check(info):
    return not info.is_wrapper and (any(row.required for row in info.attributes)
                                    or info.base is None)


def overrides_children(info):
    return not info.is_wrapper and (bool(info.elements or info.alternatives or info.content)
                                    or info.base is None)


def has_init(info):
    return info.has("root") or any(shape.initialise() for shape in shapes(info))
