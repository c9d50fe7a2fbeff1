#!/usr/bin/python3
"""check_map.py MAP.dxf INDEX.grd MAPPING_LAYER PILLAR_LAYER ...: whether a map shows its index

Holds the hatches of the mapping layer against the plan and the grid, by other libraries than the
program's: their area is that of the grid less the pillars; each of many points carries the colour
of its cell in an opening and none in a pillar. Prints what it found; exit status 1 for a fault.
"""
import random
import sys

import ezdxf
from ezdxf import path
from shapely.geometry import Point, Polygon, box
from shapely.ops import unary_union
from shapely.prepared import prep

PALETTE = (174, 170, 190, 200, 210, 230, 10, 30, 40, 50)
BANDS = 10
POINTS = 1500
EDGE = 0.05  # feet: points closer to an outline say nothing, since arcs are followed by chords


def read_grid(name):
    lines = open(name, encoding="utf-8").read().split("\n")
    low_y, low_x, high_y, high_x = (float(line) for line in lines[:4])
    columns, rows = int(lines[4]), int(lines[5])
    values = [float(line) for line in lines[6:6 + (columns + 1) * (rows + 1)]]
    return (low_x, low_y, high_x, high_y), columns, rows, values


def outlines(space, layers):
    return [Polygon([(v.x, v.y) for v in path.make_path(e).flattening(0.002)]).buffer(0)
            for e in space.query("LWPOLYLINE POLYLINE") if e.dxf.layer in layers]


def hatch_shape(hatch):
    """The area that the even-odd rule fills. Loops of one hatch do not cross."""
    loops = [Polygon([v[:2] for v in p.vertices]) for p in hatch.paths]
    loops.sort(key=lambda p: -p.area)
    outer, holes = [], []
    for loop in loops:
        inside = loop.representative_point()
        depth = sum(1 for p in outer + holes if p.contains(inside))
        (holes if depth % 2 else outer).append(loop)
    return unary_union(outer).difference(unary_union(holes))


def main():
    drawing, grid_file, layer, *pillar_layers = sys.argv[1:]
    space = ezdxf.readfile(drawing).modelspace()
    extents, columns, rows, values = read_grid(grid_file)
    pillars = unary_union(outlines(space, pillar_layers))
    openings = box(*extents).difference(pillars)
    shapes = [(h.dxf.color, hatch_shape(h)) for h in space.query("HATCH") if h.dxf.layer == layer]
    mapped = sum(shape.area for _, shape in shapes)
    print(f"openings {openings.area:.0f} mapped {mapped:.0f}")
    faults = 0 if abs(mapped - openings.area) < 1e-4 * openings.area else 1

    cells = [values[j * (columns + 1) + i] for j in range(rows) for i in range(columns)]
    low, high = min(cells), max(cells)
    chance = random.Random(5)
    in_pillar = prep(pillars)
    tests = [(colour, prep(shape)) for colour, shape in shapes]
    edge = openings.boundary
    looked_at = 0
    for _ in range(POINTS):
        x, y = chance.uniform(extents[0], extents[2]), chance.uniform(extents[1], extents[3])
        point = Point(x, y)
        column = (x - extents[0]) / (extents[2] - extents[0]) * columns
        row = (y - extents[1]) / (extents[3] - extents[1]) * rows
        if edge.distance(point) < EDGE or any(abs(c - round(c)) < 1e-3 for c in (column, row)):
            continue
        value = cells[int(row) * columns + int(column)]
        band = min(BANDS - 1, int((value - low) / (high - low) * BANDS))
        expected = [] if in_pillar.contains(point) else [PALETTE[band]]
        found = [colour for colour, shape in tests if shape.contains(point)]
        looked_at += 1
        if found != expected:
            faults += 1
            print(f"at {x:.2f}, {y:.2f} (value {value:g}): colour {found}, expected {expected}")
    print(f"points {looked_at} faults {faults}")
    sys.exit(1 if faults or looked_at < POINTS / 2 else 0)


if __name__ == "__main__":
    main()
