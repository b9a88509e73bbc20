"""Runs inside a private session bus: starts tumbler, asks it for one thumbnail and checks the answer.

    thumbnail_service.py TUMBLERD DOCUMENT Ready|Error
"""
import hashlib
import os
import struct
import subprocess
import sys
import tempfile
import time
import zlib

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

from outcomes import check, report  # noqa: E402

SERVICE = "org.freedesktop.thumbnails.Thumbnailer1"
OBJECT = "/org/freedesktop/thumbnails/Thumbnailer1"
MIME_TYPE = "application/x-velmor-source"
NORMAL_SIZE = 128
TIMEOUT_SECONDS = 30


def check_mime_database(document):
    by_name, _ = Gio.content_type_guess(document, None)
    check(by_name == MIME_TYPE, f"the name {os.path.basename(document)} gives the type {by_name}")
    by_content, _ = Gio.content_type_guess(None, b'{\n.appVersion = "1";\n.formatVersion = 3;\nfontMaster = (\n')
    check(by_content == MIME_TYPE, f"a document without its file name gives the type {by_content}")
    other, _ = Gio.content_type_guess(None, b'{ "name": "not a font", "count": 3 }\n')
    check(other != MIME_TYPE, "any text that starts with a brace is taken for a document")


def wait_for_service(bus, tumbler):
    deadline = time.monotonic() + TIMEOUT_SECONDS
    while time.monotonic() < deadline:
        check(tumbler.poll() is None, f"tumblerd ended with status {tumbler.returncode}")
        (owned,) = bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                                 "NameHasOwner", GLib.Variant("(s)", (SERVICE,)), GLib.VariantType("(b)"),
                                 Gio.DBusCallFlags.NONE, -1, None).unpack()
        if owned:
            return
        time.sleep(0.1)
    raise Failure(f"tumblerd did not take the name {SERVICE} within {TIMEOUT_SECONDS} s")


def call(bus, method, arguments, reply_type):
    return bus.call_sync(SERVICE, OBJECT, SERVICE, method, arguments, GLib.VariantType(reply_type),
                         Gio.DBusCallFlags.NONE, TIMEOUT_SECONDS * 1000, None).unpack()


def request_thumbnail(bus, uri):
    """Queues the document and returns the first Ready or Error signal for it, or None at the timeout."""
    loop = GLib.MainLoop()
    answers = {}

    def on_signal(_bus, _sender, _path, _interface, name, parameters):
        if name in ("Ready", "Error"):
            answers.setdefault(parameters[0], (name, parameters.unpack()))
        if handle in answers:
            loop.quit()

    subscription = bus.signal_subscribe(None, SERVICE, None, OBJECT, None, Gio.DBusSignalFlags.NONE, on_signal)
    # Subscribed before queueing, so that an answer that comes at once is not lost.
    (handle,) = call(bus, "Queue", GLib.Variant("(asasssu)", ([uri], [MIME_TYPE], "normal", "default", 0)), "(u)")
    # Signals are dispatched only while the loop runs, so none is missed before it starts.
    GLib.timeout_add_seconds(TIMEOUT_SECONDS, loop.quit)
    loop.run()
    bus.signal_unsubscribe(subscription)
    return answers.get(handle)


def read_png(path):
    """Returns width, height, text chunks and whether any pixel is other than transparent black."""
    with open(path, "rb") as f:
        data = f.read()
    check(data.startswith(b"\x89PNG\r\n\x1a\n"), f"{path} is not a PNG")
    position, text, compressed = 8, {}, b""
    while position < len(data):
        length, kind = struct.unpack(">I4s", data[position:position + 8])
        body = data[position + 8:position + 8 + length]
        if kind == b"IHDR":
            width, height, depth, color_type = struct.unpack(">IIBB", body[:10])
        elif kind == b"tEXt":
            key, _, value = body.partition(b"\0")
            text[key.decode("latin-1")] = value.decode("latin-1")
        elif kind == b"IDAT":
            compressed += body
        position += 12 + length
    channels = {0: 1, 2: 3, 3: 1, 4: 2, 6: 4}[color_type]
    row = 1 + (width * channels * depth + 7) // 8
    raw = zlib.decompress(compressed)
    # Every filter predicts zero from zero neighbours, so the first pixel byte that isn't zero stays
    # so when filtered: a blank picture is exactly one whose filtered bytes are all zero.
    drawn = any(any(raw[y * row + 1:(y + 1) * row]) for y in range(height))
    return width, height, text, drawn


def run(tumblerd, document, expected):
    check_mime_database(document)
    uri = Gio.File.new_for_path(document).get_uri()
    cached = os.path.join(os.environ["XDG_CACHE_HOME"], "thumbnails", "normal",
                          hashlib.md5(uri.encode()).hexdigest() + ".png")
    with tempfile.TemporaryFile() as log:
        tumbler = subprocess.Popen([tumblerd], stdout=log, stderr=subprocess.STDOUT)
        try:
            bus = Gio.bus_get_sync(Gio.BusType.SESSION, None)
            wait_for_service(bus, tumbler)
            _, supported = call(bus, "GetSupported", None, "(asas)")
            check(MIME_TYPE in supported, "tumbler did not load the installed thumbnailer entry")
            started = time.monotonic()
            answer = request_thumbnail(bus, uri)
            check(answer is not None, f"neither Ready nor Error came within {TIMEOUT_SECONDS} s")
            name, parameters = answer
            print(f"{name} after {time.monotonic() - started:.1f} s: {parameters[1:]}")
            check(name == expected, f"the service answered {name}, not {expected}")
            check(uri in parameters[1], f"the {name} signal does not name {uri}")
            if expected == "Error":
                check(not os.path.exists(cached), f"a failed request left {cached}")
                return
            check(os.path.exists(cached), f"no thumbnail at {cached}")
            width, height, text, drawn = read_png(cached)
            print(f"{cached}: {width}x{height}")
            check(1 <= width <= NORMAL_SIZE and 1 <= height <= NORMAL_SIZE,
                  f"a normal thumbnail of {width}x{height} is larger than {NORMAL_SIZE}x{NORMAL_SIZE}")
            check(text.get("Thumb::URI") == uri, f"the thumbnail names {text.get('Thumb::URI')}, not {uri}")
            check(drawn, "the thumbnail is blank")
        except Failure:
            log.seek(0)
            sys.stdout.write("tumblerd said:\n" + log.read().decode(errors="replace"))
            raise
        finally:
            tumbler.terminate()
            tumbler.wait(TIMEOUT_SECONDS)


if __name__ == "__main__":
    sys.exit(report(run, sys.argv[1:]))
