#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# Makes tests/fonts/two_squares.ttf with fontTools (Debian: python3-fonttools): U+1F7E5 is a square in one flat red
# (COLR, version 0), U+1F7E6 a red square in a blue one, U+0041 an outline without colours; the axis wght stretches "A".
import sys
from fontTools.fontBuilder import FontBuilder
from fontTools.pens.ttGlyphPen import TTGlyphPen


def square(left, bottom, right, top):
    pen = TTGlyphPen(None)
    pen.moveTo((left, bottom))
    for point in ((left, top), (right, top), (right, bottom)):
        pen.lineTo(point)
    pen.closePath()
    return pen.glyph()


glyphs = {".notdef": square(100, 0, 500, 700), "space": TTGlyphPen(None).glyph(), "A": square(50, 0, 550, 700),
          "red": square(0, -150, 900, 750), "blue": square(0, -150, 900, 750), "inner": square(300, 150, 600, 450)}
builder = FontBuilder(1000, isTTF=True)
builder.setupGlyphOrder(list(glyphs))
builder.setupCharacterMap({0x20: "space", 0x41: "A", 0x1F7E5: "red", 0x1F7E6: "blue"})
builder.setupGlyf(glyphs)
builder.setupHorizontalMetrics({name: (1000 if name in ("red", "blue") else 600, 0) for name in glyphs})
builder.setupHorizontalHeader(ascent=800, descent=-200)
builder.setupNameTable({"familyName": "Two Squares", "styleName": "Regular"})
builder.setupOS2(sTypoAscender=800, sTypoDescender=-200, usWinAscent=800, usWinDescent=200)
builder.setupPost()
builder.setupFvar([("wght", 100, 400, 900, "Weight")], [])
from fontTools.ttLib.tables.TupleVariation import TupleVariation
builder.setupGvar({"A": [TupleVariation({"wght": (0, 1, 1)}, [(0, 0), (0, 0), (400, 0), (400, 0), (0, 0), (400, 0), (0, 0), (0, 0)])]})
builder.setupCOLR({"red": [("red", 0)], "blue": [("blue", 1), ("inner", 0)]}, version=0)
builder.setupCPAL([[(1.0, 0.0, 0.0, 1.0), (0.0, 0.0, 1.0, 1.0)]])
builder.font["head"].created = builder.font["head"].modified = 0
builder.font.recalcTimestamp = False
builder.save(sys.argv[1])
