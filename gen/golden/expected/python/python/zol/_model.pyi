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
    A = "Grade_A"
    B_PLUS = "Grade_B-plus"

class Document(DocumentParts, Object):
    note: str
    stamps: List[datetime]
    alias: List[str]
    size: int | None
    box: Box | None
    lid: Box | None
    parts: List[Part]
    shapes: List[Shape]
    outline: Shape | None
    anon_tag: str | float | None
    anon_tag_choice: AnonTag
    elements: List[ForeignElement]
    def __init__(self, *, note: str = ..., stamps: object = ..., alias: object = ..., size: int | None = ..., box: Box | None = ..., lid: Box | None = ..., parts: object = ..., shapes: object = ..., outline: Shape | None = ..., anon_tag: str | float | None = ..., anon_tag_choice: AnonTag = ..., elements: object = ...) -> None: ...
    def copy(self) -> Document: ...

class Box(Object):
    grade: Grade
    spare: Grade | None
    count: int
    code: str
    weight: float
    def __init__(self, *, grade: Grade = ..., spare: Grade | None = ..., count: int = ..., code: str = ..., weight: float = ...) -> None: ...
    def copy(self) -> Box: ...

class Part(Object):
    unit: str | None
    value: bytes
    def __init__(self, *, unit: str | None = ..., value: bytes = ...) -> None: ...
    def copy(self) -> Part: ...

class PartChoice(ChoiceParts, Object):
    grade: Grade | None
    text: str | None
    amount: float | None
    number: int | None
    box: Box | None
    def __init__(self, *, grade: Grade | None = ..., text: str | None = ..., amount: float | None = ..., number: int | None = ..., box: Box | None = ...) -> None: ...
    def copy(self) -> PartChoice: ...

class AnonTag(ChoiceParts, Object):
    tag_text: str | None
    tag_number: float | None
    def __init__(self, *, tag_text: str | None = ..., tag_number: float | None = ...) -> None: ...
    def copy(self) -> AnonTag: ...

class Shape(Object):
    name: str | None
    choice: Grade | str | float | int | Box | None
    choice_choice: PartChoice | None
    def __init__(self, *, name: str | None = ..., choice: Grade | str | float | int | Box | None = ..., choice_choice: PartChoice | None = ...) -> None: ...
    def copy(self) -> Shape: ...

class Round(Shape):
    radius: float
    def __init__(self, *, name: str | None = ..., choice: Grade | str | float | int | Box | None = ..., choice_choice: PartChoice | None = ..., radius: float = ...) -> None: ...
    def copy(self) -> Round: ...

class Ring(Round):
    inner: float
    def __init__(self, *, name: str | None = ..., choice: Grade | str | float | int | Box | None = ..., choice_choice: PartChoice | None = ..., radius: float = ..., inner: float = ...) -> None: ...
    def copy(self) -> Ring: ...
