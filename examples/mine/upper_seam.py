"""An old mine in a seam 80 feet above: mains with square pillars and two panels that were pulled.

Plain outlines in the mine's frame, as an old map gives them.
"""

from shapely.geometry import LineString, box

from mine.workings import pieces

MAINS = box(-2400.0, -220.0, 2300.0, 220.0)
GOBS = [box(-1900.0, 220.0, -300.0, 1400.0), box(600.0, -1700.0, 2100.0, -220.0)]
ENTRY = 20.0
PILLAR = (80.0, 68.0)


def pillars():
    out = []
    u0, v0, u1, v1 = MAINS.bounds
    u = u0 + ENTRY
    while u + PILLAR[0] < u1:
        v = v0 + ENTRY
        while v + PILLAR[1] < v1:
            out.append(box(u, v, u + PILLAR[0], v + PILLAR[1]))
            v += PILLAR[1] + ENTRY
        u += PILLAR[0] + ENTRY
    return out


def solid_coal(property_line):
    """The coal around the mains and the gobs, cut so that no piece has a hole."""
    mined = MAINS.union(GOBS[0]).union(GOBS[1])
    cuts = [LineString([(u, -9000.0), (u, 9000.0)]) for u in (-1100.0, 1350.0)]
    return pieces(property_line.difference(mined), cuts)
