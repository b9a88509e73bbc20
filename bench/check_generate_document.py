#!/usr/bin/env python3
"""Checks velmor-generate: same variant, same bytes; the sizes the benchmarks need; and documents
that the record readers accept, in both formats, as one file and as a package.

usage: check_generate_document.py PATH/TO/velmor-generate
"""
import os
import re
import subprocess
import sys
import tempfile
import time

UNQUOTED = re.compile(r"[A-Za-z0-9$\-./:_]+")

COMMON_KEYS = {".appVersion", "DisplayStrings", "classes", "customParameters", "date", "familyName",
               "featurePrefixes", "features", "fontMaster", "glyphs", "instances", "unitsPerEm",
               "userData", "versionMajor", "versionMinor"}
FONT_KEYS = {
    1: COMMON_KEYS | {"copyright", "designer", "designerURL", "kerning", "manufacturer", "manufacturerURL"},
    3: COMMON_KEYS | {".formatVersion", "axes", "kerningLTR", "metrics", "note", "properties", "settings", "stems"},
}
NODE_TYPES = {1: {"LINE": "l", "CURVE": "c", "OFFCURVE": "o"}, 3: {"l": "l", "c": "c", "o": "o"}}


class Unquoted(str):
    """A value written without quotes: a number or a plain word."""


def parse(text):
    """The generic text property-list grammar; dictionaries become lists of pairs, to keep order
    and to see repeated keys."""
    pos = 0

    def space():
        nonlocal pos
        while pos < len(text) and text[pos] in " \t\r\n":
            pos += 1

    def value():
        nonlocal pos
        space()
        c = text[pos]
        if c == "{":
            pos += 1
            pairs = []
            while True:
                space()
                if text[pos] == "}":
                    pos += 1
                    return pairs
                key = value()
                space()
                assert text[pos] == "=", f"'=' expected at {pos}"
                pos += 1
                pairs.append((key, value()))
                space()
                assert text[pos] == ";", f"';' expected at {pos}"
                pos += 1
        if c == "(":
            pos += 1
            items = []
            space()
            while text[pos] != ")":
                items.append(value())
                space()
                if text[pos] == ",":
                    pos += 1
                    space()
            pos += 1
            return items
        if c == '"':
            end = pos + 1
            while text[end] != '"':
                end += 2 if text[end] == "\\" else 1
            quoted = text[pos + 1:end]
            pos = end + 1
            return quoted
        match = UNQUOTED.match(text, pos)
        assert match, f"unexpected {c!r} at {pos}"
        pos = match.end()
        return Unquoted(match.group())

    result = value()
    space()
    assert pos == len(text), "text after the document"
    return result


def as_dict(pairs):
    keys = [k for k, _ in pairs]
    assert len(keys) == len(set(keys)), f"repeated keys in {keys}"
    return dict(pairs)


def file_name(glyph_name):
    name = "_" + glyph_name[1:] if glyph_name.startswith(".") else glyph_name
    return "".join(c + "_" if c.isupper() else c for c in name)


def check_spacing(text):
    """Record readers match "key = " byte by byte: one space on each side of every '='."""
    for number, line in enumerate(text.split("\n"), 1):
        bare = re.sub(r'"(\\.|[^"\\])*"', '""', line)
        for match in re.finditer("=", bare):
            i = match.start()
            assert bare[i - 1:i + 2][::2] == "  " and bare[i - 2] != " " and bare[i + 2:i + 3] != " ", \
                f"line {number}: {line!r}"


def structure(layer, fmt):
    """What must agree between layers that blend: node types of each path, component names."""
    shapes = []
    for key in (("paths", "components") if fmt == 1 else ("shapes",)):
        for shape in layer.get(key, []):
            shape = as_dict(shape)
            if "nodes" in shape:
                shapes.append("".join(node_type(n, fmt) for n in shape["nodes"]))
            else:
                shapes.append("ref " + shape["name" if fmt == 1 else "ref"])
    return shapes


def node_type(node, fmt):
    if fmt == 1:
        assert re.fullmatch(r"-?\d+ -?\d+ (LINE|CURVE|OFFCURVE)( SMOOTH)?( \{name = hr00;\})?", node), node
        return NODE_TYPES[1][node.split()[2]]
    assert isinstance(node, list) and re.fullmatch(r"[lco]s?", node[2]), node
    return NODE_TYPES[3][node[2][0]]


def check_glyph(glyph, font, fmt, names):
    masters = [as_dict(m)["id"] for m in font["fontMaster"]]
    layers = [as_dict(layer) for layer in glyph["layers"]]
    by_id = {layer["layerId"]: layer for layer in layers}
    master_layers = [by_id[m] for m in masters]
    expected = structure(master_layers[0], fmt)
    for layer in layers:
        if "associatedMasterId" in layer:
            assert layer["associatedMasterId"] in masters
        assert structure(layer, fmt) == expected, f"{glyph['glyphname']}: layers don't blend"
        check_special(layer, font, fmt)
        check_hints(layer, fmt)
    paths = [s for s in expected if not s.startswith("ref ")]
    if glyph["glyphname"] not in ("A", "g", ".notdef"):
        assert all(20 <= len(p) <= 80 for p in paths), f"{glyph['glyphname']}: {list(map(len, paths))}"
    for s in expected:
        assert not s.startswith("ref ") or s[4:] in names
    assert len(glyph["lastChange"]) == 25
    if "unicode" in glyph:
        codes = glyph["unicode"]
        if fmt == 1:
            assert all(re.fullmatch("[0-9A-F]{4,5}", c) for c in codes.split(",")), codes
        else:
            assert all(c.isdigit() for c in (codes if isinstance(codes, list) else [codes])), codes


def check_special(layer, font, fmt):
    axes = len(font["axes"]) if fmt == 3 else len(as_dict(font["customParameters"][0])["value"])
    name = layer.get("name", "")
    if fmt == 3 and "attr" in layer:
        attr = as_dict(layer["attr"])
        assert len(attr.get("coordinates", [0] * axes)) == axes
        assert all(as_dict(rule) for rule in attr.get("axisRules", [[("min", 1)]]))
    if fmt == 1 and "{" in name:
        assert re.fullmatch(r"\{\d+(, \d+)*\}", name) and name.count(",") + 1 == axes, name
    if fmt == 1 and "[" in name:
        assert re.search(r" \[\d+\]$", name), name


def check_hints(layer, fmt):
    first = as_dict((layer.get("paths") if fmt == 1 else layer.get("shapes"))[0]) if "hints" in layer else None
    for hint in layer.get("hints", []):
        for key in ("origin", "target"):
            place = as_dict(hint)[key]
            path, node = (map(int, re.findall(r"\d+", place)) if fmt == 1 else map(int, place))
            assert path == 0 and node < len(first["nodes"])


def check_font(font, fmt, glyph_count, master_count):
    assert set(font) <= FONT_KEYS[fmt], set(font) - FONT_KEYS[fmt]
    assert (font.get(".formatVersion") == "3") == (fmt == 3)
    assert len(font["fontMaster"]) == master_count
    if fmt == 1:
        assert as_dict(font["customParameters"][0])["name"] == "Axes"
    for instance in font["instances"]:
        factors = as_dict(instance).get("instanceInterpolations", [])
        assert not factors or abs(sum(float(v) for _, v in factors) - 1.0) < 1e-9
    kerning = as_dict(font["kerning" if fmt == 1 else "kerningLTR"])
    assert len(kerning) == master_count


def check_document(path, fmt, glyph_count, master_count):
    text = open(path, encoding="utf-8").read()
    assert text.startswith("{\n")
    check_spacing(text)
    font = as_dict(parse(text))
    check_font(font, fmt, glyph_count, master_count)
    glyphs = [as_dict(g) for g in font["glyphs"]]
    names = [g["glyphname"] for g in glyphs]
    assert len(names) == glyph_count and len(set(names)) == glyph_count
    assert names.index("g") == names.index("A") + 1
    assert glyph_count // 4 <= names.index("A") <= 3 * glyph_count // 4
    for glyph in glyphs:
        check_glyph(glyph, font, fmt, set(names))
    return font


def check_package(folder, single, fmt):
    """A package holds what the single file holds, spread over files."""
    info_text = open(os.path.join(folder, "fontinfo.plist"), encoding="utf-8").read()
    check_spacing(info_text)
    info = as_dict(parse(info_text))
    assert "glyphs" not in info and info == {k: v for k, v in single.items() if k != "glyphs"}
    order = parse(open(os.path.join(folder, "order.plist"), encoding="utf-8").read())
    glyphs = [as_dict(g) for g in single["glyphs"]]
    assert order == [g["glyphname"] for g in glyphs]
    assert len(os.listdir(os.path.join(folder, "glyphs"))) == len(glyphs)
    for index, glyph in enumerate(glyphs):
        text = open(os.path.join(folder, "glyphs", file_name(glyph["glyphname"]) + ".glyph"), encoding="utf-8").read()
        check_spacing(text)
        stored = as_dict(parse(text))
        assert stored.pop("index") == str(index) and stored == glyph


def check_large_document(path):
    """Too large to parse here: the glyph order and the kerning are counted in the text."""
    text = open(path, encoding="utf-8").read()
    names = re.findall(r"^glyphname = (.*);$", text, re.M)
    assert len(names) == 10000 and names.index("A") == 5000 and names.index("g") == 5001
    kerning = text[text.index("\nkerningLTR = {"):text.index("\nmetrics = (")]
    pairs = len(re.findall(r'^("@MMK_R_k\d+"|[\w.]+) = -?\d+;$', kerning, re.M))
    assert pairs >= 30000, pairs
    return pairs


def same_output(paths):
    """Byte equality of two files or two folders."""
    return subprocess.run(["diff", "-r", "-q", *paths], stdout=subprocess.DEVNULL).returncode == 0


def main():
    tool = sys.argv[1]
    with tempfile.TemporaryDirectory() as work:
        def generate(name, *options):
            path = os.path.join(work, name)
            start = time.monotonic()
            subprocess.run([tool, *options, path], check=True, stdout=subprocess.DEVNULL)
            return path, time.monotonic() - start

        big, seconds = generate("big.velmor")
        size = os.path.getsize(big)
        print(f"10000 glyphs, 3 masters, format 3: {size / 1e6:.1f} MB in {seconds:.2f} s")
        assert size >= 50_000_000
        print(f"  {check_large_document(big)} kerning pairs, A and g at 5000 and 5001")
        assert same_output([big, generate("again.velmor")[0]])
        assert not same_output([big, generate("other.velmor", "--variant", "2")[0]])
        os.remove(os.path.join(work, "again.velmor"))
        os.remove(os.path.join(work, "other.velmor"))

        for fmt in (1, 3):
            for glyphs, masters in ((5, 2), (200, 3), (40, 1)):
                options = ["--glyphs", str(glyphs), "--masters", str(masters), "--format", str(fmt)]
                single = generate(f"f{fmt}-{glyphs}.velmor", *options)[0]
                font = check_document(single, fmt, glyphs, masters)
                package = generate(f"f{fmt}-{glyphs}.velmorpackage", "--package", *options)[0]
                check_package(package, font, fmt)
                assert same_output([package, generate(f"again-{fmt}-{glyphs}", "--package", *options)[0]])
            print(f"format {fmt}: documents and packages of 5, 40 and 200 glyphs are well formed")

        package, seconds = generate("big.velmorpackage", "--package", "--format", "1")
        print(f"10000 glyphs, 3 masters, format 1 package: {len(os.listdir(package + '/glyphs'))} glyph files"
              f" in {seconds:.2f} s")
        assert subprocess.run([tool, "--package", package], stderr=subprocess.DEVNULL).returncode == 1, \
            "a package must not be written over another"
        assert subprocess.run([tool, "--glyphs", "1", os.path.join(work, "x")],
                              stderr=subprocess.DEVNULL).returncode == 64
    print("ok")


if __name__ == "__main__":
    main()
