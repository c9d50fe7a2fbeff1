#!/usr/bin/python3
"""check_drawing.py FILE: what other programs say of a drawing file

Prints lines "KEY VALUE"; the exit status is 1 when the file has a fault: ezdxf's audit finds errors
or would fix something, handles stand twice or lie above $HANDSEED, groups, extended data or layers
point to nothing.
"""
import collections
import sys

import ezdxf
from ezdxf.acis import api as acis
from ezdxf.lldxf.encoding import decode_dxf_unicode
from osgeo import ogr

faults = []


def raw_tags(path):
    doc_bytes = open(path, "rb").read()
    if doc_bytes.startswith(b"AutoCAD Binary DXF"):
        return None
    lines = doc_bytes.decode("latin-1").splitlines()
    return [(int(lines[i]), lines[i + 1].strip()) for i in range(0, len(lines) - 1, 2)]


def check_handles(path):
    tags = raw_tags(path)
    if tags is None:
        return
    handles = collections.Counter()
    kind, open_, seed, variable, largest = None, False, None, None, 0
    for code, value in tags:
        if code == 0:
            kind, open_ = value, value not in ("SECTION", "CLASS")
        elif code == 9:
            variable = value
        elif code == 5 and variable == "$HANDSEED":
            seed, variable = int(value, 16), None
        elif code == 100:
            open_ = False
        elif open_ and code == (105 if kind == "DIMSTYLE" else 5):
            handles[value] += 1
            largest = max(largest, int(value, 16))
            open_ = False
    faults.extend("handle %s stands %d times" % pair for pair in handles.items() if pair[1] > 1)
    if seed is None or seed <= largest:
        faults.append("$HANDSEED %s is not above %X" % (seed, largest))


def check_audit(path):
    doc = ezdxf.readfile(path)
    handles = {e.dxf.handle for e in doc.modelspace()}
    for name, group in doc.groups:
        members = list(group)
        print("group", name, len(members))
    auditor = doc.audit()
    faults.extend("audit: " + e.message for e in auditor.errors)
    faults.extend("audit would fix: " + e.message for e in auditor.fixes)
    registered = {a.dxf.name for a in doc.appids}
    layers = {layer.dxf.name.lower() for layer in doc.layers}
    for entity in doc.modelspace():
        if (entity.dxf.is_supported("layer")
                and entity.dxf.get("layer", "0").lower() not in layers):
            faults.append("unknown layer " + entity.dxf.layer)
        if entity.xdata:
            faults.extend("unknown application " + a for a in entity.xdata.data
                          if a not in registered)
    print("version", doc.dxfversion)
    for layer in doc.layers:
        print("layer", layer.dxf.name, layer.dxf.color, layer.dxf.linetype, layer.dxf.flags)
    kinds = collections.Counter(e.dxftype() for e in doc.modelspace())
    for kind, count in sorted(kinds.items()):
        print("kind", kind, count)
    for entity in doc.modelspace().query("REGION"):
        check_region(entity)
    if doc.dxfversion != "AC1009":
        for name, target in doc.rootdict.items():
            if getattr(target, "dxftype", lambda: "")() == "DICTIONARY":
                for key, record in target.items():
                    if getattr(record, "dxftype", lambda: "")() == "XRECORD":
                        texts = [decode_dxf_unicode(v) for c, v in record.tags if c == 1]
                        print("record", name, key, "|".join(texts))
    return len(handles)


def check_region(entity):
    """Prints the faces with their loops' corners as ezdxf's reader of the modeller's data sees
    them."""
    for body in acis.load(entity.acis_data):
        for lump in body.lumps():
            for shell in lump.shells():
                for face in shell.faces():
                    loops = [[c.edge.start_vertex.point.location for c in loop.coedges()]
                             for loop in face.loops()]
                    print("face", " / ".join(
                        " ".join("%g,%g,%g" % tuple(p) for p in loop) for loop in loops))


def check_gdal(path):
    ogr.UseExceptions()
    source = ogr.Open(path)
    layer = source.GetLayer(0)
    for feature in layer:
        geometry = feature.GetGeometryRef()
        if geometry is None:
            continue
        points = geometry.GetPoints() if geometry.GetGeometryCount() == 0 else []
        print("gdal", feature.GetField("Layer"), geometry.GetGeometryName(),
              " ".join("%g,%g" % p[:2] for p in points or []))


if __name__ == "__main__":
    check_handles(sys.argv[1])
    check_audit(sys.argv[1])
    if "--gdal" in sys.argv:
        check_gdal(sys.argv[1])
    for fault in faults:
        print("FAULT", fault)
    sys.exit(1 if faults else 0)
