"""The ground above and around the seam: hills, a stream valley, ponds, faults, the seam's lie and
what the drill holes found.

Coordinates and heights are feet, in the property's own frame: from its south-west corner, x east,
y north.
"""

import math

from shapely.geometry import LineString, Point, Polygon
from shapely.ops import unary_union

WIDTH, HEIGHT = 5760.0, 5560.0

STREAM = [(-150, 4420), (420, 4270), (900, 3880), (1420, 3700), (1960, 3790), (2440, 3560),
          (2830, 3120), (3330, 2950), (3720, 2560), (4150, 2380), (4440, 1900), (4960, 1560),
          (5340, 1130), (5920, 870)]
BRANCH = [(3050, 5700), (3170, 5260), (3020, 4800), (3240, 4380), (3120, 3870), (2830, 3120)]

# (x, y, height, reach east, reach north) of the hills
HILLS = [(900, 1300, 330, 900, 800), (2500, 1500, 190, 700, 900), (4900, 3900, 380, 1000, 900),
         (1700, 5000, 260, 800, 500), (4000, 500, 210, 900, 500), (200, 2900, 120, 500, 500),
         (4200, 5200, 160, 500, 500), (5600, 2500, 110, 500, 600)]


def smooth(points, step=60.0):
    """A curve through the points (Catmull-Rom), as points about a step apart."""
    ends = [points[0], *points, points[-1]]
    out = []
    for p0, p1, p2, p3 in zip(ends, ends[1:], ends[2:], ends[3:]):
        count = max(2, int(math.dist(p1, p2) / step))
        for i in range(count):
            t = i / count
            out.append(tuple(0.5 * (2 * b + (c - a) * t + (2 * a - 5 * b + 4 * c - d) * t * t
                                    + (3 * b - a - 3 * c + d) * t ** 3)
                             for a, b, c, d in zip(p0, p1, p2, p3)))
    return out + [points[-1]]


STREAM_LINE = LineString(smooth(STREAM))
BRANCH_LINE = LineString(smooth(BRANCH))


def natural_surface(x, y):
    """Elevation of the surface before the ponds were dammed."""
    z = 1010.0 + 0.012 * x - 0.006 * y
    for hx, hy, height, ex, ey in HILLS:
        z += height * math.exp(-((x - hx) / ex) ** 2 - ((y - hy) / ey) ** 2)
    z += 14.0 * math.sin(x / 410.0 + 1.0) * math.sin(y / 370.0)
    at = Point(x, y)
    for line, depth, reach in ((STREAM_LINE, 0.62, 520.0), (BRANCH_LINE, 0.45, 360.0)):
        bed = 975.0 - 0.008 * line.project(at)
        near = math.exp(-(line.distance(at) / reach) ** 2)
        z -= depth * near * max(0.0, z - bed)
    return z


def seam_floor(x, y):
    """Elevation of the seam's floor: a dip to the south-east with gentle rolls."""
    return (655.0 - 0.016 * x + 0.010 * y + 7.0 * math.sin(x / 900.0 + 0.4)
            + 6.0 * math.cos(y / 760.0) + 4.0 * math.sin((x + y) / 520.0))


def valley():
    """The outline of the valley floor and its flanks: one closed ring of straight segments."""
    parts = []
    for line, wide in ((STREAM_LINE, 230.0), (BRANCH_LINE, 150.0)):
        steps = int(line.length / 90.0)
        at = [line.interpolate(i / steps, normalized=True) for i in range(steps + 1)]
        reach = [wide * (1 + 0.22 * math.sin(i / 3.1) + 0.12 * math.sin(i / 1.3))
                 for i in range(steps + 1)]
        parts += [a.buffer(r).union(b.buffer(s)).convex_hull
                  for a, b, r, s in zip(at, at[1:], reach, reach[1:])]
    area = unary_union(parts).intersection(rectangle(0.0)).simplify(4.0)
    return list(max(getattr(area, 'geoms', [area]), key=lambda p: p.area).exterior.coords)[:-1]


def pond(x, y, reach, stretch, turn):
    """A pond's shore: a lobed oval."""
    shore = []
    for i in range(44):
        a = math.tau * i / 44
        r = reach * (1 + 0.16 * math.sin(2 * a + turn) + 0.09 * math.sin(3 * a + 2 * turn)
                     + 0.05 * math.sin(5 * a))
        u, v = r * stretch * math.cos(a), r * math.sin(a) / stretch
        shore.append((x + u * math.cos(turn) - v * math.sin(turn),
                      y + u * math.sin(turn) + v * math.cos(turn)))
    return shore


PONDS = {'FARM POND': pond(1080, 4660, 150, 1.25, 0.5),
         'MILL POND': pond(2960, 3330, 190, 1.5, 2.3),
         'SLURRY IMPOUNDMENT': pond(4640, 4780, 400, 1.2, 0.9)}

_SHORES = [Polygon(shore) for shore in PONDS.values()]
_WATER = [sum(natural_surface(*p) for p in shore) / len(shore) for shore in PONDS.values()]


def surface(x, y):
    """Elevation of the surface: level on the ponds, graded back to the hillside around them."""
    z = natural_surface(x, y)
    for shore, level in zip(_SHORES, _WATER):
        share = math.exp(-(shore.distance(Point(x, y)) / 140.0) ** 2)
        z += share * (level - z)
    return z


# name, throw, points with the bulge of the segment that leaves each; the last is drawn as an
# old-style polyline
FAULTS = [('KESTREL FAULT', 12, [(4050, -40, 0.0), (4180, 900, 0.12), (4010, 2050, -0.10),
                                 (4260, 3250, 0.0), (4200, 4300, 0.08), (4420, 5600, 0.0)]),
          ('', 4, [(4075, 2600, 0.0), (4700, 3130, -0.15), (5150, 3760, 0.0)]),
          ('', 6, [(330, 5590, 0.0), (800, 4980, 0.09), (1050, 4150, 0.0), (1260, 3560, 0.0)]),
          ('HOLLOW FAULT', 8, [(1500, -30, 0.0), (1720, 640, -0.12), (1690, 1250, 0.0),
                               (1950, 1880, 0.0), (2010, 2300, 0.0)])]


def rectangle(margin):
    return Polygon([(-margin, -margin), (WIDTH + margin, -margin),
                    (WIDTH + margin, HEIGHT + margin), (-margin, HEIGHT + margin)])


def drill_holes(random):
    """(name, x, y, thickness of the roof shale in feet, strength of the roof in psi)."""
    holes = []
    for i in range(7):
        for j in range(7):
            x = 280.0 + 865.0 * i + random.uniform(-230, 230)
            y = 260.0 + 840.0 * j + random.uniform(-230, 230)
            shale = 9.0 + 4.5 * math.sin(x / 1150.0 + 0.8) * math.cos(y / 1350.0) + 0.0008 * x \
                + random.uniform(-0.6, 0.6)
            strength = 6800.0 - 260.0 * shale + 900.0 * math.sin((x - y) / 1600.0) \
                + random.uniform(-200, 200)
            holes.append((f'DH-{2001 + len(holes)}', x, y, round(shale, 1), round(strength, -1)))
    return holes


def contours(height, step, node=80.0):
    """Contour lines of a height function over the property: a list of (level, points)."""
    nx, ny = int(WIDTH / node), int(HEIGHT / node)
    xs = [WIDTH * i / nx for i in range(nx + 1)]
    ys = [HEIGHT * j / ny for j in range(ny + 1)]
    z = [[height(x, y) for y in ys] for x in xs]
    low, high = min(map(min, z)), max(map(max, z))
    lines = []
    level = math.ceil(low / step) * step
    while level < high:
        lines += [(level, line) for line in chained(crossings(xs, ys, z, level + 1e-7))]
        level += step
    return lines


def crossings(xs, ys, z, level):
    """Where the level crosses the triangles of the lattice: pairs of (edge key, point)."""
    def cut(a, b):
        (i, j), (k, m) = sorted((a, b))
        part = (level - z[i][j]) / (z[k][m] - z[i][j])
        return ((i, j), (k, m)), (xs[i] + part * (xs[k] - xs[i]), ys[j] + part * (ys[m] - ys[j]))

    segments = []
    for i in range(len(xs) - 1):
        for j in range(len(ys) - 1):
            for corners in (((i, j), (i + 1, j), (i + 1, j + 1)),
                            ((i, j), (i + 1, j + 1), (i, j + 1))):
                cuts = [cut(a, b) for a, b in zip(corners, corners[1:] + corners[:1])
                        if (z[a[0]][a[1]] < level) != (z[b[0]][b[1]] < level)]
                if cuts:
                    segments.append(cuts)
    return segments


def chained(segments):
    """Segments joined end to end; a closed line repeats its first point."""
    at = {}
    for segment in segments:
        for key, _ in segment:
            at.setdefault(key, []).append(segment)
    left = {id(s): s for s in segments}

    def follow(key, line):
        while True:
            onward = next((s for s in at[key] if id(s) in left), None)
            if onward is None:
                return
            del left[id(onward)]
            key, point = onward[1] if onward[0][0] == key else onward[0]
            line.append(point)

    lines = []
    for segment in segments:
        if left.pop(id(segment), None) is None:
            continue
        ahead, behind = [segment[1][1]], [segment[0][1]]
        follow(segment[1][0], ahead)
        follow(segment[0][0], behind)
        lines.append(behind[::-1] + ahead)
    return lines
