#!/usr/bin/python3
"""make_drawing.py VERSION FILE [--binary] [--crlf]: a drawing by another program's hand

Holds one of each kind that the system works with, kinds that it only keeps, blocks, a group,
extended data, an extension dictionary, a paper layout and text beyond ASCII.
"""
import sys

import ezdxf


def fill(doc):
    r12 = doc.dxfversion == "AC1009"
    msp = doc.modelspace()
    doc.layers.add("PILLARS", color=3)
    doc.layers.add("Größe", color=5) if not r12 else doc.layers.add("GOB", color=5)
    doc.appids.add("OTHERAPP")
    line = msp.add_line((0, 0, 1), (10, 5, 2), dxfattribs={"layer": "PILLARS", "color": 1})
    line.set_xdata("OTHERAPP", [(1000, "note"), (1010, (1.5, 2.5, 3.5)), (1040, 4.25), (1070, 7)])
    msp.add_point((3, 4, 5))
    msp.add_circle((20, 20, 3), 7.5)
    msp.add_circle((20, 20, 3), 2.5, dxfattribs={"extrusion": (0, 0, -1)})
    msp.add_circle((20, 20, 3), 2.5, dxfattribs={"extrusion": (0, 1, 0)})
    msp.add_arc((5, 5), 2, 30, 120)
    msp.add_text("Pillar Ä" if not r12 else "Pillar", dxfattribs={"height": 2, "insert": (1, 2)})
    msp.add_3dface([(0, 0, 0), (1, 0, 0), (1, 1, 1), (0, 1, 1)])
    old = msp.add_polyline2d([(0, 0), (10, 0), (10, 10)], close=True)
    old.dxf.elevation = (0, 0, 4)
    msp.add_polyline3d([(0, 0, 0), (5, 5, 5), (10, 0, 10)])
    msp.add_solid([(0, 0), (1, 0), (0, 1)])
    block = doc.blocks.new("BOLT")
    block.add_circle((0, 0), 0.5)
    block.add_attdef("NO", (0, 1), dxfattribs={"height": 0.3})
    insert = msp.add_blockref("BOLT", (30, 30), dxfattribs={"xscale": 2, "yscale": 2})
    insert.add_attrib("NO", "17", (30, 31))
    if r12:
        return
    msp.add_lwpolyline([(0, 0, 0.5), (10, 0, 0), (10, 10, -0.25)], format="xyb", close=True)
    hatch = msp.add_hatch(color=4)
    hatch.paths.add_polyline_path([(0, 0), (10, 0), (10, 10), (0, 10)])
    hatch.paths.add_polyline_path([(2, 2), (8, 2, 1), (8, 8)])
    edges = msp.add_hatch(color=2)
    path = edges.paths.add_edge_path()
    path.add_line((0, 0), (10, 0))
    path.add_arc((10, 5), 5, -90, 90)
    path.add_line((10, 10), (0, 10))
    path.add_line((0, 10), (0, 0))
    msp.add_mtext("two\nlines")
    msp.add_ellipse((0, 0), (5, 0), 0.5)
    msp.add_spline([(0, 0), (3, 4), (7, 2)])
    with doc.groups.new("PANEL").edit_data() as group:
        group.append(line)
    extension = line.new_extension_dict()
    extension.add_xrecord("KEEP") if hasattr(extension, "add_xrecord") else None
    doc.layout("Layout1").add_line((0, 0), (1, 1))


def save(doc, path, binary, newline):
    if not binary:
        with open(path, "wt", encoding=doc.output_encoding, errors="dxfreplace",
                  newline=newline) as stream:
            doc.write(stream)
        return
    doc.saveas(path, fmt="bin")


if __name__ == "__main__":
    version, path = sys.argv[1:3]
    document = ezdxf.new(version, setup=True)
    fill(document)
    save(document, path, "--binary" in sys.argv, "\r\n" if "--crlf" in sys.argv else "\n")
