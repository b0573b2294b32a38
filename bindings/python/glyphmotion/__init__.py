# SPDX-License-Identifier: MIT
"""A line of text becomes an animation.

    import glyphmotion

    gif = glyphmotion.render("Hi", effect="vortex")            # bytes
    glyphmotion.save("Hi", "hi.webp", fill="texture:Marble")   # a file, whole or not at all
    pictures = [frame.image() for frame in glyphmotion.frames("Hi", size=48)]

Options have the long names of the program's with underscores for dashes: line_space=120, no dashes and no values of
their own. True and False switch a flag on and off; None is as if the option were not there; set={"@rotate": 90} sets any
control. glyphmotion.options() names all of them, and `glyphmotion help` says what they do.

Every function may be called in several threads at once; all of them let other threads run while they work. Ctrl+C ends
a rendering. Where a result differs from what was asked for, a Note is issued as a warning.
"""

from __future__ import annotations

import os
import warnings
from typing import TYPE_CHECKING, Any, Callable, Mapping, Optional

from . import _core
from ._core import Cancelled, Error, OptionError

if TYPE_CHECKING:
    import numpy
    import PIL.Image
    from typing_extensions import Unpack

    from ._options import Options

__all__ = ["Cancelled", "Error", "Frame", "Note", "OptionError", "effects", "formats", "frames", "looks", "options", "render", "save"]
__version__: str = _core.version

Progress = Callable[[str, int, int], Optional[bool]]


class Note(UserWarning):
    """The result differs from what was asked for: an option without effect, a font that is not installed."""


class Frame:
    """One frame as a viewer sees it. Supports the buffer protocol: height x width x 4 bytes, RGBA, straight alpha."""

    def __init__(self, raw: _core.RawFrame) -> None:
        self._raw = raw
        self.width: int = raw.width
        self.height: int = raw.height
        self.number: int = raw.number
        self.duration: int = raw.duration
        """How long the frame is shown, in milliseconds."""

    def array(self) -> numpy.ndarray[Any, Any]:
        """The pixels as a NumPy array of height x width x 4 bytes, without a copy."""
        import numpy

        return numpy.asarray(memoryview(self._raw))

    def image(self) -> PIL.Image.Image:
        """The frame as a PIL image in mode RGBA."""
        import PIL.Image

        return PIL.Image.frombytes("RGBA", (self.width, self.height), self.tobytes())

    def tobytes(self) -> bytes:
        return memoryview(self._raw).tobytes()

    def __repr__(self) -> str:
        return f"<glyphmotion.Frame {self.number}: {self.width} x {self.height}, {self.duration} ms>"


def _words(text: str | None, options: Mapping[str, Any]) -> list[tuple[str, str]]:
    words = [] if text is None else [("text", text)]
    for name, value in options.items():
        name = name.replace("_", "-")
        if isinstance(value, Mapping):
            words += [(name, f"{key}={int(item) if isinstance(item, bool) else item}") for key, item in value.items()]
        elif isinstance(value, bool):
            words.append((name, str(int(value))))
        elif value is not None:
            words.append((name, os.fspath(value) if isinstance(value, os.PathLike) else str(value)))
    return words


def _warn(notes: list[str]) -> None:
    for note in notes:
        warnings.warn(note, Note, stacklevel=3)


def render(text: str | None = None, format: str = "gif", *, progress: Progress | None = None, **options: Unpack[Options]) -> bytes:
    """Renders an animation in one of formats() and returns the bytes of its file.

    progress is called with the stage, a position and a total now and then; False from it cancels. Raises OptionError for
    an option or value that is not allowed, Error when the run fails, and Cancelled.
    """
    picture, notes = _core.render(_words(text, options), format, progress)
    _warn(notes)
    return picture


def save(
    text: str | None,
    path: str | os.PathLike[str],
    *,
    progress: Progress | None = None,
    **options: Unpack[Options],
) -> None:
    """Like render, into a file whose name ends in one of formats(), as in "a.webp". It appears whole or not at all."""
    _warn(_core.save(_words(text, options), os.fspath(path), progress))


def frames(text: str | None = None, *, progress: Progress | None = None, **options: Unpack[Options]) -> list[Frame]:
    """Like render, but the frames in true colour, with alpha=True on a transparent background."""
    raw, notes = _core.frames(_words(text, options), progress)
    _warn(notes)
    return [Frame(frame) for frame in raw]


def options() -> list[str]:
    """The names of all options, with dashes as the program has them."""
    return _core.options()


def effects() -> list[str]:
    """What the option effect takes."""
    return _core.effects()


def looks() -> list[str]:
    """The looks that are installed. The option look takes the path of a TOML file as well."""
    return _core.looks()


def formats() -> list[str]:
    """What render takes as its format."""
    return _core.formats()
