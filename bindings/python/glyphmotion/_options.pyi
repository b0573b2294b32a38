# The options of render, save and frames, for type checkers and editors.
import os
from typing import Literal, Mapping, TypedDict, Union

_Path = Union[str, os.PathLike[str]]
_Time = Union[int, str]

class Options(TypedDict, total=False):
    effect: str
    look: _Path
    width: int
    height: int
    fit: Literal["shrink", "none"]
    valign: Literal["top", "middle", "bottom"]
    size: int
    pad: int
    space: int
    font: str
    font_file: _Path
    font_variation: str
    bold: bool
    italic: bool
    antialias: bool
    align: Literal["left", "center", "right", "justify"]
    line_space: int
    text_direction: Literal["auto", "ltr", "rtl"]
    emoji: Literal["color", "mono"]
    text_file: _Path
    delay: _Time
    pause: _Time
    fps: int
    frames: int
    seed: int
    direction: Union[int, str]
    softness: int
    still_text: bool
    loop: int
    start: Union[int, Literal["rest"]]
    fill: str
    shadow: str
    background: str
    outline: str
    palette: Union[int, str]
    colors: int
    dither: Union[bool, Literal["stable", "ordered"]]
    effort: int
    max_bytes: int
    true_color: bool
    supercompress: bool
    transparent: bool
    mask_background: bool
    alpha: bool
    alpha_background: bool
    lossy: int
    threads: int
    sample: bool
    add_comment: bool
    set: Mapping[str, Union[bool, int, str]]
    document: _Path
    save_document: _Path
    settings: _Path
