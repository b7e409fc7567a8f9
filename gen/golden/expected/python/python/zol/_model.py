"""Generated from model/schema by gen/emit_python.py: edit those, not this."""

from enum import Enum as _Enum

from . import _object as _parts
from ._object import model_class as _class
from ._zol import field as _field

class Grade(_Enum):
    """How good it is.

    A: The best.
    B_PLUS: Nearly "as good", a | b & <c>.

    In documents: Grade.
    """

    A = "Grade_A"
    B_PLUS = "Grade_B-plus"

@_class(0, "Zol")
class Document(_parts.DocumentParts, _parts.Object):
    """The root.

    In documents: Zol.
    """

    __slots__ = ()
    note = _field(0, "note", "What \"the\\rest\" means, a | b & c*.\n\nIn documents: element Note of Zol. Here: str.")
    stamps = _field(1, "stamps", "When it was stamped.\n\nIn documents: element Stamp of Zol. Here: List[datetime].\nAt least one in a document that can be saved.")
    alias = _field(2, "alias", "Another name.\n\nIn documents: element Alias of Zol. Here: List[str].\nWhite space is collapsed.")
    size = _field(3, "size", "How big it is.\n\nIn documents: element Size of Zol. Here: int | None.\nMore than 0 and at most 9; None if there is none.")
    box = _field(4, "box", "A box.\n\nIn documents: element Box of Zol. Here: Box | None.\nNone if it is marked as nil, which setting None does.")
    lid = _field(5, "lid", "What shuts the box.\n\nIn documents: element Lid of Zol. Here: Box | None.\nNone if there is none.")
    parts = _field(6, "parts", "A value with an attribute.\n\nIn documents: element Part of Zol. Here: List[Part].")
    shapes = _field(7, "shapes", "One of the family.\n\nIn documents: element Shape of Zol. Here: List[Shape].")
    outline = _field(8, "outline", "One of the family.\n\nIn documents: element Outline of Zol. Here: Shape | None.")
    anon_tag = _field(9, "anon_tag", "What it is tagged with.\n\nIn documents: group of Zol. Here: str | float | None.\nWhat the choice holds.", None, "held")
    anon_tag_choice = _field(9, "anon_tag_choice", "What it is tagged with.\n\nIn documents: group of Zol. Here: AnonTag.")
    elements = _field(10, "elements", "Whatever else there is.\n\nIn documents: elements of others of Zol. Here: List[ForeignElement].")

@_class(1, "Box")
class Box(_parts.Object):
    """A box. It may be empty.

    In documents: Box.
    """

    __slots__ = ()
    _telling = ('weight',)
    grade = _field(256, "grade", "How it is graded.\n\nIn documents: attribute Grade of Box. Here: Grade.", Grade)
    spare = _field(257, "spare", "How a spare one is graded.\n\nIn documents: attribute Spare of Box. Here: Grade | None.\nGrade_A is meant where there is none; None if there is none.", Grade)
    count = _field(258, "count", "How many there are, the spare ones included.\n\nIn documents: attribute Count of Box. Here: int.\nAt least 2 and at most 99.")
    code = _field(259, "code", "A letter.\n\nIn documents: element Code of Box. Here: str.\nExactly 1 character.")
    weight = _field(260, "weight", "How heavy it is.\n\nIn documents: element Weight of Box. Here: float.\nIn kg; more than 0 and at most 2.5; 1.5 unless it is set.")

@_class(3, "Part")
class Part(_parts.Object):
    """A value with an attribute.

    In documents: Part.
    """

    __slots__ = ()
    unit = _field(768, "unit", "What it is counted in.\n\nIn documents: attribute Unit of Part. Here: str | None.\nNone if there is none.")
    value = _field(769, "value", "What it is made of.\n\nIn documents: content of Part. Here: bytes.")

@_class(4, "PartChoice")
class PartChoice(_parts.ChoiceParts, _parts.Object):
    """One of several.

    In documents: PartChoice.
    """

    __slots__ = ()
    _telling = ('kind',)
    grade = _field(1024, "grade", "How it is graded.\n\nIn documents: alternative Grade of PartChoice. Here: Grade | None.\nNone if it is not what is held.", Grade)
    text = _field(1025, "text", "What it says.\n\nIn documents: alternative Text of PartChoice. Here: str | None.\nWhite space is collapsed; None if it is not what is held.")
    amount = _field(1026, "amount", "A share.\n\nIn documents: alternative Amount of PartChoice. Here: float | None.\nIn percent; at least 0; None if it is not what is held.")
    number = _field(1027, "number", "A number.\n\nIn documents: alternative Number of PartChoice. Here: int | None.\nAt least -2147483648 and at most 2147483647; None if it is not what is held.")
    box = _field(1028, "box", "A box.\n\nIn documents: alternative Box of PartChoice. Here: Box | None.\nNone if it is not what is held.")

@_class(5, "anon_Tag")
class AnonTag(_parts.ChoiceParts, _parts.Object):
    """What it is tagged with.

    In documents: anon_Tag.
    """

    __slots__ = ()
    _telling = ('kind',)
    tag_text = _field(1280, "tag_text", "What it says.\n\nIn documents: alternative TagText of anon_Tag. Here: str | None.\nNone if it is not what is held.")
    tag_number = _field(1281, "tag_number", "A number.\n\nIn documents: alternative TagNumber of anon_Tag. Here: float | None.\nNone if it is not what is held.")

@_class(6, "ShapeType", is_abstract=True)
class Shape(_parts.Object):
    """A family.

    In documents: ShapeType.
    """

    __slots__ = ()
    _telling = ('name',)
    name = _field(1536, "name", "What it is called.\n\nIn documents: attribute Name of ShapeType. Here: str | None.\nNone if there is none.")
    choice = _field(1537, "choice", "One of several.\n\nIn documents: element Choice of ShapeType. Here: Grade | str | float | int | Box | None.\nNone if there is none.\nWhat the choice holds.", None, "held")
    choice_choice = _field(1537, "choice_choice", "One of several.\n\nIn documents: element Choice of ShapeType. Here: PartChoice | None.\nNone if there is none.")

@_class(7, "RoundType")
class Round(Shape):
    """Something round.

    In documents: RoundType.
    """

    __slots__ = ()
    _telling = ('name', 'radius')
    radius = _field(1792, "radius", "From its middle to its edge.\n\nIn documents: element Radius of RoundType. Here: float.\nAt least 0.")

@_class(8, "RingType")
class Ring(Round):
    """Something round with a hole.

    In documents: RingType.
    """

    __slots__ = ()
    _telling = ('name', 'radius', 'inner')
    inner = _field(2048, "inner", "From its middle to the hole.\n\nIn documents: element Inner of RingType. Here: float.")

__all__ = [
    "AnonTag",
    "Box",
    "Document",
    "Grade",
    "Part",
    "PartChoice",
    "Ring",
    "Round",
    "Shape",
]
