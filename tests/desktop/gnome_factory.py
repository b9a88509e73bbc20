"""Asks GNOME's thumbnail factory for the thumbnail of one document and checks what it caches.

    gnome_factory.py DOCUMENT readable|unreadable
"""
import hashlib
import math
import os
import sys

import gi

gi.require_version("GnomeDesktop", "3.0")
gi.require_version("GdkPixbuf", "2.0")
from gi.repository import GdkPixbuf, Gio, GLib, GnomeDesktop  # noqa: E402

from outcomes import check, report  # noqa: E402

MIME_TYPE = "application/x-velmor-source"
NORMAL_SIZE = 128
# tests/desktop/data/Sample.velmor: "A" is a triangle of width 600, "g" a box of width 500 from
# -200 to 500; ascender 800, descender -200. The canvas is 100 + 600 + 500 + 100 units wide and
# 800 + 200 + 200 high, with the baseline 300 above its lower edge.
CANVAS = (1300, 1200)
BASELINE = 300


def alpha_at(pixbuf, x, y):
    """The alpha of the pixel that shows canvas point (x, y), y measured up from the lower edge."""
    scale = NORMAL_SIZE / max(CANVAS)
    column, row = int(x * scale), pixbuf.get_height() - 1 - int(y * scale)
    return pixbuf.get_pixels()[row * pixbuf.get_rowstride() + column * pixbuf.get_n_channels() + 3]


def check_picture(path, uri):
    pixbuf = GdkPixbuf.Pixbuf.new_from_file(path)
    width, height = pixbuf.get_width(), pixbuf.get_height()
    print(f"{path}: {width}x{height}")
    check(pixbuf.get_has_alpha(), "the thumbnail has no transparency")
    check((width, height) == (NORMAL_SIZE, math.ceil(NORMAL_SIZE * CANVAS[1] / CANVAS[0])),
          f"a normal thumbnail of {width}x{height}, not fitted into {NORMAL_SIZE} pixels")
    check(pixbuf.get_option("tEXt::Thumb::URI") == uri, "the thumbnail does not name its document")
    check(alpha_at(pixbuf, 100 + 300, BASELINE + 200) == 255, "the inside of A is not solid")
    check(alpha_at(pixbuf, 700 + 250, BASELINE + 150) == 255, "the inside of g is not solid")
    check(alpha_at(pixbuf, 100 + 60, BASELINE + 600) == 0, "beside the apex of A is not transparent")
    check(alpha_at(pixbuf, 40, 40) == 0, "the margin is not transparent")


def run(document, kind):
    uri = Gio.File.new_for_path(document).get_uri()
    mtime = int(os.stat(document).st_mtime)
    cached = os.path.join(os.environ["XDG_CACHE_HOME"], "thumbnails", "normal",
                          hashlib.md5(uri.encode()).hexdigest() + ".png")
    factory = GnomeDesktop.DesktopThumbnailFactory.new(GnomeDesktop.DesktopThumbnailSize.NORMAL)
    check(factory.can_thumbnail(uri, MIME_TYPE, mtime), "the factory did not find the installed thumbnailer entry")
    try:
        pixbuf = factory.generate_thumbnail(uri, MIME_TYPE)
    except GLib.Error as error:
        pixbuf = None
        print(f"the factory answered: {error.message}")
    if kind == "unreadable":
        check(pixbuf is None, "an unreadable document got a picture")
        factory.create_failed_thumbnail(uri, mtime)
        check(factory.has_valid_failed_thumbnail(uri, mtime), "the failure was not remembered")
        check(not os.path.exists(cached), f"a failed request left {cached}")
        return
    check(pixbuf is not None, "the factory made no picture")
    factory.save_thumbnail(pixbuf, uri, mtime)
    check(factory.lookup(uri, mtime) == cached, f"the thumbnail is not cached at {cached}")
    check_picture(cached, uri)


if __name__ == "__main__":
    sys.exit(report(run, sys.argv[1:]))
