"""What the records share: conversion of fields, repr, equality, numbers in and out.

A record is a ctypes structure, passed to the library as it is. Fields of numbers take any sequence (list, tuple, array,
numpy array), fields of integers refuse what does not fit instead of cutting it off. Fields whose name begins with
"reserved" are carried along but neither shown nor compared.
"""

from __future__ import annotations

import abc
import ctypes
import operator
from typing import Any, ClassVar, Generic, Iterable, Iterator, List, Sequence, SupportsFloat, Tuple, Type, TypeVar, cast

Numbers = Iterable[SupportsFloat]
T = TypeVar("T")
RecordT = TypeVar("RecordT", bound="Record")
RecordClass = TypeVar("RecordClass", bound="Type[Record]")


class Array(Sequence[T]):
    """For type checkers: a ctypes array in a record, of fixed length."""

    def __setitem__(self, index: int, value: T) -> None:
        """Changes one element of the record."""


class Field(abc.ABC, Generic[T]):
    """A field that converts what it is given; reading is left to ctypes."""

    def __init__(self, plain: Any, name: str, ctype: Any) -> None:
        self._plain = plain
        self._name = name
        self._ctype = ctype

    def __get__(self, record: Any, owner: Any = None) -> T:
        return cast(T, self if record is None else self._plain.__get__(record, owner))

    def __set__(self, record: Any, value: Any) -> None:
        self._plain.__set__(record, self.converted(value))

    @abc.abstractmethod
    def converted(self, value: Any) -> Any:
        """The value as ctypes takes it."""


class Int(Field[int]):
    """An integer of so many bits."""

    def converted(self, value: Any) -> int:
        return checked_integer(self._ctype, value, self._name)


class ArrayField(Field[Array[T]]):
    """An array; a shorter sequence fills its beginning and leaves zeros behind."""

    def converted(self, value: Any) -> Any:
        values = tuple(value)
        if len(values) > self._ctype._length_:
            raise ValueError(f"{self._name}: {len(values)} values where there are {self._ctype._length_}")
        return self._ctype(*map(self.element, values))

    @abc.abstractmethod
    def element(self, value: Any) -> Any:
        """One value of the array as ctypes takes it."""


class Doubles(ArrayField[float]):
    """An array of doubles; ctypes takes whatever has __float__ and refuses text."""

    def element(self, value: Any) -> Any:
        return value


class Ints(ArrayField[int]):
    """An array of integers of so many bits."""

    def element(self, value: Any) -> int:
        return checked_integer(self._ctype._type_, value, self._name)


class Records(ArrayField[RecordT]):
    """An array of records; each may be given as its numbers."""

    def element(self, value: Any) -> Any:
        return self._ctype._type_.of(value)


class Nested(Field[RecordT]):
    """A record in a record; may be given as its numbers."""

    def converted(self, value: Any) -> Any:
        return self._ctype.of(value)


def checked_integer(ctype: Any, value: Any, name: str) -> int:
    """The value as an int that the C type can hold; ctypes would drop its upper bits."""
    number = operator.index(value)
    if ctype(number).value != number:
        raise OverflowError(f"{name}: {number} does not fit in {8 * ctypes.sizeof(ctype)} bits")
    return number


class Record(ctypes.Structure):
    """A record of the library: a ctypes structure with the layout of the header."""

    _shown: ClassVar[Tuple[str, ...]] = ()
    _count: ClassVar[int] = 0  # numbers in all
    _plain: ClassVar[bool] = False  # nothing but single doubles

    @classmethod
    def of(cls: Type[RecordT], value: Any) -> RecordT:
        """The value itself when it is such a record, else the record made of its numbers."""
        return value if isinstance(value, cls) else cls.from_sequence(value)

    @classmethod
    def from_sequence(cls: Type[RecordT], numbers: Numbers) -> RecordT:
        """The record of all its numbers in the order of the header, those of nested records in place."""
        values = tuple(numbers)
        record = cls.__new__(cls)
        if len(values) != cls._count:
            raise ValueError(f"{cls.__name__}: {len(values)} numbers where there are {cls._count}")
        if cls._plain:
            ctypes.Structure.__init__(record, *values)
        else:
            record._fill(iter(values))
        return record

    def _fill(self, numbers: Iterator[Any]) -> None:
        for name in self._shown:
            value = getattr(self, name)
            if isinstance(value, Record):
                value._fill(numbers)
            elif isinstance(value, ctypes.Array):
                if issubclass(value._type_, Record):
                    for element in value:
                        element._fill(numbers)
                else:
                    setattr(self, name, [next(numbers) for _ in value])
            else:
                setattr(self, name, next(numbers))

    def to_list(self) -> List[float]:
        """All its numbers in the order of the header, those of nested records in place."""
        numbers: List[float] = []
        for name in self._shown:
            value = getattr(self, name)
            elements: Any = value if isinstance(value, ctypes.Array) else (value,)
            for element in elements:
                if isinstance(element, Record):
                    numbers.extend(element.to_list())
                else:
                    numbers.append(element)
        return numbers

    def __iter__(self) -> Iterator[float]:
        return iter(self.to_list())

    def __len__(self) -> int:
        return self._count

    def __bool__(self) -> bool:
        return True

    def copy(self: RecordT) -> RecordT:
        """A copy with every byte of the record."""
        return type(self).from_buffer_copy(self)

    def replace(self: RecordT, **changes: Any) -> RecordT:
        """A copy with some fields changed."""
        changed = self.copy()
        for name, value in changes.items():
            if name not in self._shown:
                raise TypeError(f"{type(self).__name__} has no field {name!r}")
            setattr(changed, name, value)
        return changed

    def __eq__(self, other: object) -> bool:
        """Equal numbers; a NaN equals nothing. Compare bytes(record) for the very same bits."""
        return type(other) is type(self) and all(map(operator.eq, self.to_list(), cast(Record, other).to_list()))

    __hash__ = None  # type: ignore[assignment]  # records change

    def __repr__(self) -> str:
        values = ((name, getattr(self, name)) for name in self._shown)
        fields = (f"{name}={list(v) if isinstance(v, ctypes.Array) else v!r}" for name, v in values)
        return f"{type(self).__name__}({', '.join(fields)})"


def record(cls: RecordClass) -> RecordClass:
    """Gives the fields of a record their conversions."""
    cls._shown = tuple(str(field[0]) for field in cls._fields_ if not str(field[0]).startswith("reserved"))
    for name, ctype in (field[:2] for field in cls._fields_):
        kind = _kind_of(ctype)
        if kind is not None:
            setattr(cls, name, kind(getattr(cls, name), name, ctype))
    empty: Any = cls.__new__(cls)  # type: ignore[arg-type]  # some versions of mypy lose the class here
    cls._count = len(empty.to_list())
    cls._plain = all(field[1] is ctypes.c_double for field in cls._fields_)
    return cls


def _kind_of(ctype: Any) -> Any:
    """The class of fields for a C type; None for a single floating-point number, which ctypes converts itself."""
    if issubclass(ctype, Record):
        return Nested
    if issubclass(ctype, ctypes.Array):
        element: Any = ctype._type_
        if issubclass(element, Record):
            return Records
        return Doubles if element is ctypes.c_double else Ints
    return None if ctype in (ctypes.c_double, ctypes.c_float) else Int
