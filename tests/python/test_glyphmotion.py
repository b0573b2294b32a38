# SPDX-License-Identifier: MIT
"""Tests of the Python module with the standard library's unittest, NumPy and Pillow."""

import ast
import io
import os
import pathlib
import tempfile
import threading
import time
import unittest

import numpy
import PIL.Image

import glyphmotion

SMALL = dict(effect="vortex", size=20, frames=4)


class TestGlyphmotion(unittest.TestCase):
    def test_every_format_is_what_other_readers_read(self):
        for name in ("gif", "png", "webp"):
            picture = PIL.Image.open(io.BytesIO(glyphmotion.render("Ab", name, **SMALL)))
            self.assertEqual(picture.format, name.upper())
            self.assertIn(picture.n_frames, (4, 3) if name == "webp" else (4,))  # libwebp joins equal frames
        self.assertEqual(set(glyphmotion.formats()) & {"gif", "png", "webp", "y4m"}, {"gif", "png", "webp", "y4m"})
        self.assertIn("background-hyperspace", glyphmotion.effects())
        with tempfile.TemporaryDirectory() as folder:
            path = pathlib.Path(folder) / "a.gif"
            glyphmotion.save("Ab", path, **SMALL)
            self.assertEqual(path.read_bytes(), glyphmotion.render("Ab", **SMALL))

    def test_frames_are_the_files_pixels(self):
        frames = glyphmotion.frames("Ab", alpha=True, **SMALL)
        with PIL.Image.open(io.BytesIO(glyphmotion.render("Ab", "png", alpha=True, **SMALL))) as picture:
            for number, frame in enumerate(frames):
                picture.seek(number)
                self.assertEqual(picture.info["duration"], frame.duration)
                wanted, pixels = numpy.asarray(picture.convert("RGBA")), frame.array()
                self.assertEqual((pixels.shape, pixels.dtype), ((frame.height, frame.width, 4), numpy.uint8))
                seen = wanted[..., 3] > 0
                self.assertTrue((wanted[..., 3] == pixels[..., 3]).all() and (wanted[seen] == pixels[seen]).all())
                self.assertTrue((numpy.asarray(frame.image()) == pixels).all())
        self.assertTrue((frames[0].array()[..., 3] == 0).any())

    def test_values_of_python_are_values_of_options(self):
        plain = glyphmotion.render("Ab", **SMALL)
        same = dict(SMALL, bold=True, fill=None, set={"@frames": 4, "MainFontBold": True})
        self.assertEqual(glyphmotion.render("Ab", **same), plain)
        self.assertNotEqual(glyphmotion.render("Ab", bold=False, line_space=90, **SMALL), plain)
        stub = pathlib.Path(glyphmotion.__file__).with_name("_options.pyi").read_text()
        names = [node.target.id.replace("_", "-") for node in ast.walk(ast.parse(stub)) if isinstance(node, ast.AnnAssign)]
        self.assertEqual(sorted(names), sorted(set(glyphmotion.options()) - {"text", "format"}))

    def test_failures_are_exceptions(self):
        with self.assertRaisesRegex(glyphmotion.OptionError, "^size 5000 is not allowed: it takes a whole number"):
            glyphmotion.render("Ab", size=5000)
        with self.assertRaises(ValueError):
            glyphmotion.render("Ab", no_such_option=1)
        with self.assertRaisesRegex(glyphmotion.Error, "cannot be written"):
            glyphmotion.save("Ab", "/nowhere/a.gif", **SMALL)
        with self.assertWarnsRegex(glyphmotion.Note, "delay 85ms becomes 90 ms"):
            glyphmotion.render("Ab", delay="85ms", **SMALL)
        with self.assertRaises(glyphmotion.Cancelled):
            glyphmotion.render("Ab", progress=lambda stage, position, total: False, **SMALL)
        with self.assertRaises(ZeroDivisionError):
            glyphmotion.frames("Ab", progress=lambda stage, position, total: 1 // 0, **SMALL)

    def test_other_threads_run_meanwhile(self):
        ticks, done = [], threading.Event()

        def tick():
            while not done.is_set():
                ticks.append(time.monotonic())
                time.sleep(0.001)

        thread = threading.Thread(target=tick)
        thread.start()
        begin = time.monotonic()
        glyphmotion.render("Some words", effect="vortex", size=60, frames=60)
        end = time.monotonic()
        done.set()
        thread.join()
        within = [begin, *(moment for moment in ticks if begin < moment < end), end]
        longest = max(after - before for before, after in zip(within, within[1:]))
        self.assertLess(longest, (end - begin) / 2, "the lock was held")


if __name__ == "__main__":
    os.environ.setdefault("GLYPHMOTION_HOME", tempfile.mkdtemp())
    unittest.main()
