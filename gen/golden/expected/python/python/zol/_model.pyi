# Generated from model/schema by gen/emit_python.py: edit those, not this.
from datetime import datetime
from enum import Enum

from ._object import (ChoiceParts, DocumentParts, ForeignElement, List, Object, SpaceParts,
                      SpectrumParts)

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

class Grade(Enum):
    """How good it is."""
    A = "Grade_A"
    """The best."""
    B_PLUS = "Grade_B-plus"
    """Nearly \"as good\", a | b & <c>."""

class Document(DocumentParts, Object):
    """The root."""
    note: str
    """What \"the\\rest\" means, a | b & c*."""
    stamps: List[datetime]
    """When it was stamped. At least one in a document that can be saved."""
    alias: List[str]
    """Another name. White space is collapsed."""
    size: int | None
    """How big it is. More than 0 and at most 9; None if there is none."""
    box: Box | None
    """A box. None if it is marked as nil, which setting None does."""
    lid: Box | None
    """What shuts the box. None if there is none."""
    parts: List[Part]
    """A value with an attribute."""
    shapes: List[Shape]
    """One of the family."""
    outline: Shape | None
    """One of the family."""
    anon_tag: str | float | None
    """What it is tagged with."""
    anon_tag_choice: AnonTag
    """What it is tagged with."""
    elements: List[ForeignElement]
    """Whatever else there is."""
    def __init__(self, *, note: str = ..., stamps: object = ..., alias: object = ..., size: int | None = ..., box: Box | None = ..., lid: Box | None = ..., parts: object = ..., shapes: object = ..., outline: Shape | None = ..., anon_tag: str | float | None = ..., anon_tag_choice: AnonTag = ..., elements: object = ...) -> None: ...
    def copy(self) -> Document: ...

class Box(Object):
    """A box. It may be empty."""
    grade: Grade
    """How it is graded."""
    spare: Grade | None
    """How a spare one is graded. Grade_A is meant where there is none; None if there is none."""
    count: int
    """How many there are, the spare ones included. At least 2 and at most 99."""
    code: str
    """A letter. Exactly 1 character."""
    weight: float
    """How heavy it is. In kg; more than 0 and at most 2.5; 1.5 unless it is set."""
    def __init__(self, *, grade: Grade = ..., spare: Grade | None = ..., count: int = ..., code: str = ..., weight: float = ...) -> None: ...
    def copy(self) -> Box: ...

class Part(Object):
    """A value with an attribute."""
    unit: str | None
    """What it is counted in. None if there is none."""
    value: bytes
    """What it is made of."""
    def __init__(self, *, unit: str | None = ..., value: bytes = ...) -> None: ...
    def copy(self) -> Part: ...

class PartChoice(ChoiceParts, Object):
    """One of several."""
    grade: Grade | None
    """How it is graded. None if it is not what is held."""
    text: str | None
    """What it says. White space is collapsed; None if it is not what is held."""
    amount: float | None
    """A share. In percent; at least 0; None if it is not what is held."""
    number: int | None
    """A number. At least -2147483648 and at most 2147483647; None if it is not what is held."""
    box: Box | None
    """A box. None if it is not what is held."""
    def __init__(self, *, grade: Grade | None = ..., text: str | None = ..., amount: float | None = ..., number: int | None = ..., box: Box | None = ...) -> None: ...
    def copy(self) -> PartChoice: ...

class AnonTag(ChoiceParts, Object):
    """What it is tagged with."""
    tag_text: str | None
    """What it says. None if it is not what is held."""
    tag_number: float | None
    """A number. None if it is not what is held."""
    def __init__(self, *, tag_text: str | None = ..., tag_number: float | None = ...) -> None: ...
    def copy(self) -> AnonTag: ...

class Shape(Object):
    """A family."""
    name: str | None
    """What it is called. None if there is none."""
    choice: Grade | str | float | int | Box | None
    """One of several. None if there is none."""
    choice_choice: PartChoice | None
    """One of several. None if there is none."""
    def __init__(self, *, name: str | None = ..., choice: Grade | str | float | int | Box | None = ..., choice_choice: PartChoice | None = ...) -> None: ...
    def copy(self) -> Shape: ...

class Round(Shape):
    """Something round."""
    radius: float
    """From its middle to its edge. At least 0."""
    def __init__(self, *, name: str | None = ..., choice: Grade | str | float | int | Box | None = ..., choice_choice: PartChoice | None = ..., radius: float = ...) -> None: ...
    def copy(self) -> Round: ...

class Ring(Round):
    """Something round with a hole."""
    inner: float
    """From its middle to the hole."""
    def __init__(self, *, name: str | None = ..., choice: Grade | str | float | int | Box | None = ..., choice_choice: PartChoice | None = ..., radius: float = ..., inner: float = ...) -> None: ...
    def copy(self) -> Ring: ...
