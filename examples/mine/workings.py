"""The underground workings: entries, crosscuts, pillars, gobs and the coal that stays.

Lengths are feet. The workings are laid out in the mine's own frame: u runs along the mains, v to
their left, both from the middle of the property. A block is a set of parallel entries driven in one
direction; inside it s runs along the drive and t across it, to the left.
"""

import math
from dataclasses import dataclass

from shapely.geometry import LineString, Polygon
from shapely.ops import split, unary_union

ENTRY_WIDTH = 20.0
PROPERTY_BARRIER = 75.0  # coal left along the property line
RIB_ROUGHNESS = 1.6      # how far a surveyed rib strays from its line
CORNER_SCATTER = 2.6     # how far a pillar's corner strays from the projection


@dataclass
class Outline:
    """A closed outline: points, and the bulge of the segment that leaves each point."""
    points: list
    bulges: list = None

    def __post_init__(self):
        if self.bulges is None:
            self.bulges = [0.0] * len(self.points)


@dataclass
class Block:
    """Parallel entries driven together, with a crosscut every `spacing` feet."""
    name: str
    start: tuple            # (u, v) of the first crosscut on the rightmost entry
    heading: float          # degrees, from u
    entries: int
    entry_spacing: float
    crosscuts: int          # pillars along the drive
    spacing: float
    angle: float = 90.0     # crosscuts against the entries
    chevron: bool = False   # crosscuts lean towards the middle entry from both sides
    scatter: float = 1.0    # 1 for careful mining, more for old works
    stubs: tuple = ()       # how far each entry is driven beyond the last crosscut
    extracted: tuple = ()   # pillars pulled at the inby end, a number for each row
    label_height: float = 50.0
    label_at: float = 0.5   # where its name stands along the drive

    def at(self, s, t):
        """From the block's frame into the mine's."""
        c, d = math.cos(math.radians(self.heading)), math.sin(math.radians(self.heading))
        return (self.start[0] + c * s - d * t, self.start[1] + d * s + c * t)

    @property
    def width(self):
        return (self.entries - 1) * self.entry_spacing

    def crosscut(self, k, t):
        """Where crosscut k meets the line t; the first one is square to the outby workings."""
        if k == 0 or self.angle == 90.0:
            return k * self.spacing
        lean = min(1.0, k / 3) / math.tan(math.radians(self.angle))
        reach = self.width / 2 - abs(t - self.width / 2) if self.chevron else t
        return k * self.spacing + lean * reach

    def half_crosscut(self, k):
        """Half a crosscut's width measured along the entry."""
        slant = self.angle if k else 90.0
        return ENTRY_WIDTH / 2 / math.sin(math.radians(slant))

    def pillar_corners(self, row, k):
        low = row * self.entry_spacing + ENTRY_WIDTH / 2
        high = (row + 1) * self.entry_spacing - ENTRY_WIDTH / 2
        return [(self.crosscut(k, low) + self.half_crosscut(k), low),
                (self.crosscut(k + 1, low) - self.half_crosscut(k + 1), low),
                (self.crosscut(k + 1, high) - self.half_crosscut(k + 1), high),
                (self.crosscut(k, high) + self.half_crosscut(k), high)]

    def mined(self, crosscuts=None):
        """All that lies between the block's outer ribs, faces included."""
        n = self.crosscuts if crosscuts is None else crosscuts
        edges = [-ENTRY_WIDTH / 2, *(j * self.entry_spacing for j in range(self.entries)),
                 self.width + ENTRY_WIDTH / 2]
        outby = [(-ENTRY_WIDTH / 2, t) for t in edges]
        inby = [(self.crosscut(n, t) + self.half_crosscut(n), t) for t in edges]
        parts = [Polygon([self.at(*p) for p in outby + inby[::-1]])]
        for j, length in enumerate(self.stubs):
            t = j * self.entry_spacing
            s = self.crosscut(n, t)
            half = ENTRY_WIDTH / 2
            parts.append(Polygon([self.at(*p) for p in
                                  ((s, t - half), (s + half + length, t - half),
                                   (s + half + length, t + half), (s, t + half))]))
        return unary_union([p for p in parts if p.area > 0])

    def stop_within(self, limit):
        """Shortens the block until it keeps inside the limit."""
        while self.crosscuts > 1 and not limit.contains(self.mined()):
            self.crosscuts -= 1

    def is_extracted(self, row, k):
        return bool(self.extracted) and k >= self.crosscuts - 1 - self.extracted[row] and \
            self.extracted[row] > 0 and k < self.crosscuts - 1

    def pulled_area(self):
        """The gob of a retreat-mined block; the entries around it stay open."""
        cells = []
        for row in range(self.entries - 1):
            for k in range(self.crosscuts):
                if self.is_extracted(row, k):
                    corners = self.pillar_corners(row, k)
                    cells.append(Polygon([self.at(*p) for p in corners]))
        return unary_union([c.buffer(ENTRY_WIDTH * 0.75, join_style=2) for c in cells]) \
            .buffer(-ENTRY_WIDTH * 0.75, join_style=2) if cells else Polygon()


def turned_off(block, name, k, side, neck, panel):
    """A panel turned off a submain at crosscut k: a narrow neck through the barrier, then the
    panel itself.

    side is +1 for the left of the submain, -1 for the right; neck and panel are keyword values of
    Block. Returns both blocks.
    """
    heading = block.heading + 90.0 * side
    across = block.width if side > 0 else 0.0
    neck_width = (neck['entries'] - 1) * neck['entry_spacing']
    s = k * block.spacing
    corner = block.at(s + (neck_width / 2 if side > 0 else -neck_width / 2), across)
    throat = Block(name + ' neck', corner, heading, **neck)
    panel_width = (panel['entries'] - 1) * panel['entry_spacing']
    offset = (neck_width - panel_width) / 2
    start = throat.at(neck['crosscuts'] * neck['spacing'], offset)
    return throat, Block(name, start, heading, **panel)


class Workings:
    """Everything mined, and what is left standing."""

    def __init__(self, property_line, random):
        self.random = random
        self.limit = property_line.buffer(-PROPERTY_BARRIER, join_style=2)
        self.property_line = property_line
        self.blocks = []
        self.mined = []
        self.gobs = []
        self.reserves = []    # coal blocked out and not yet mined

    def drive(self, block):
        block.stop_within(self.limit)
        self.blocks.append(block)
        self.mined.append(block.mined())
        pulled = block.pulled_area()
        if not pulled.is_empty:
            self.gobs += [g for g in getattr(pulled, 'geoms', [pulled])]
        return block

    def drive_panel(self, submain, name, k, side, neck, panel):
        throat, body = turned_off(submain, name, k, side, neck, panel)
        self.drive(throat)
        return self.drive(body)

    def longwall(self, left, right, start, stop, face):
        """A longwall panel between u left and right, set up at v start, planned to v stop, the face
        now at v face (all of it mined when face is stop)."""
        room = ENTRY_WIDTH
        mined = Polygon([(left, start), (right, start), (right, face), (left, face)])
        self.mined.append(mined)
        self.gobs.append(Polygon([(left, start + room), (right, start + room),
                                  (right, face - room), (left, face - room)]))
        if face < stop:
            self.reserves.append(Polygon([(left, face), (right, face), (right, stop),
                                          (left, stop)]))

    def openings(self):
        return unary_union(self.mined).buffer(0.01, join_style=2)

    # What stands -------------------------------------------------------------------------------

    def pillars(self):
        outlines = []
        for block in self.blocks:
            for k in range(block.crosscuts):
                for row in range(block.entries - 1):
                    if not block.is_extracted(row, k):
                        corners = block.pillar_corners(row, k)
                        outline = self.surveyed(corners, block.scatter)
                        outline.points = [block.at(*p) for p in outline.points]
                        outlines.append(outline)
        return outlines

    def surveyed(self, corners, scatter):
        """A pillar as the surveyor finds it: corners off their places, cut or worn round, ribs
        that belly."""
        shift = CORNER_SCATTER * scatter
        corners = [(s + self.random.uniform(-shift, shift), t + self.random.uniform(-shift, shift))
                   for s, t in corners]
        kind = self.random.random()
        if kind < 0.40:
            return Outline(corners)
        if kind < 0.60:
            return Outline(self.cut_corners(corners))
        if kind < 0.80:
            points = self.cut_corners(corners)
            return Outline(points, [0.0 if i % 2 else 0.3 for i in range(len(points))])
        return Outline(self.bellied(corners, scatter))

    def cut_corners(self, corners):
        points = []
        for i, corner in enumerate(corners):
            cut = self.random.uniform(3.0, 8.0)
            for other in (corners[i - 1], corners[(i + 1) % len(corners)]):
                points.append(towards(corner, other, cut))
        return points

    def bellied(self, corners, scatter):
        points = []
        for i, corner in enumerate(corners):
            other = corners[(i + 1) % len(corners)]
            points.append(corner)
            for part in sorted(self.random.uniform(0.2, 0.8)
                               for _ in range(self.random.choice((1, 1, 2)))):
                points.append((corner[0] + part * (other[0] - corner[0])
                               + self.random.uniform(-1, 1) * RIB_ROUGHNESS * scatter,
                               corner[1] + part * (other[1] - corner[1])
                               + self.random.uniform(-1, 1) * RIB_ROUGHNESS * scatter))
        return points

    def gob_outlines(self):
        """Gobs with their ribs as found, and the corners of the long ones worn round."""
        outlines = []
        for gob in self.gobs:
            ring = list(gob.simplify(0.5).exterior.coords)[:-1]
            if not gob.exterior.is_ccw:
                ring.reverse()
            if len(ring) == 4:
                points = []
                for i, corner in enumerate(ring):
                    points.append(towards(corner, ring[i - 1], 35.0))
                    points.append(towards(corner, ring[(i + 1) % 4], 35.0))
                outlines.append(Outline(points, [0.4142 if i % 2 == 0 else 0.0
                                                 for i in range(8)]))
            else:
                outlines.append(Outline(self.rough_ring(ring)))
        return outlines

    def unmined(self):
        """(barriers, solid): the coal close to the workings and the coal beyond, as outlines
        without holes that together with pillars, gobs and openings fill the property."""
        openings = self.rough(self.openings())
        reserves = unary_union(self.reserves)
        near = openings.convex_hull.buffer(90.0, join_style=2).intersection(self.property_line)
        coal_near = near.difference(openings)
        # laps over the barriers, as pieces() says
        solid = pieces(self.property_line.difference(near.buffer(-1.0)), self.cuts())
        blocked_out = pieces(coal_near.intersection(reserves), [])
        barriers = pieces(coal_near.difference(reserves), self.cuts())
        return [Outline(ring(p)) for p in barriers], \
               [Outline(ring(p)) for p in solid + blocked_out]

    def cuts(self):
        """Lines that part the coal into outlines without holes: the axes of the mains and of the
        submains, carried to the property line."""
        far = 10000.0
        lines = [LineString([(-far, 0.0), (far, 0.0)])]
        for block in self.blocks:
            if block.name.startswith(('NORTH', 'SOUTH')):
                middle = block.at(0.0, block.width / 2)
                lines.append(LineString([middle, block.at(far, block.width / 2)]))
        return lines

    def rough(self, polygon):
        parts = []
        for part in getattr(polygon, 'geoms', [polygon]):
            parts.append(Polygon(self.rough_ring(list(part.exterior.coords)[:-1]),
                                 [self.rough_ring(list(hole.coords)[:-1])
                                  for hole in part.interiors if Polygon(hole).area > 1.0]))
        return unary_union([p.buffer(0) for p in parts])

    def rough_ring(self, points):
        out = []
        for i, point in enumerate(points):
            other = points[(i + 1) % len(points)]
            length = math.dist(point, other)
            out.append(point)
            steps = int(length / 55.0)
            for step in range(1, steps):
                along = (step + self.random.uniform(-0.3, 0.3)) / steps
                aside = self.random.uniform(-1, 1) * RIB_ROUGHNESS / length
                out.append((point[0] + along * (other[0] - point[0])
                            - aside * (other[1] - point[1]),
                            point[1] + along * (other[1] - point[1])
                            + aside * (other[0] - point[0])))
        return out


def towards(point, other, distance):
    length = math.dist(point, other)
    part = min(distance / length, 0.4)
    return (point[0] + part * (other[0] - point[0]), point[1] + part * (other[1] - point[1]))


def ring(polygon):
    return list(polygon.exterior.coords)[:-1]


def pieces(area, cuts):
    """The area's parts, cut along the lines; none may keep a hole. Neighbours lap over each other
    by two feet: outlines that only meet leave hair-thin gaps once their points are rounded."""
    parts = [p for p in getattr(area, 'geoms', [area]) if p.area > 0]
    for line in cuts:
        parts = [piece for p in parts for piece in split(p, line).geoms]
    lapped = [p.buffer(1.0, join_style=2).intersection(area) for p in parts if p.area > 200.0]
    parts = [max(getattr(p, 'geoms', [p]), key=lambda g: g.area) for p in lapped]
    assert not any(len(p.interiors) for p in parts), 'a piece of coal has a hole'
    return parts


# The plan of this mine --------------------------------------------------------------------------

NECK = dict(entries=4, entry_spacing=70.0, crosscuts=2, spacing=90.0)


def example_workings(property_line, random):
    w = Workings(property_line, random)
    w.drive(Block('WEST MAINS', (-2560.0, -240.0), 0.0, 7, 80.0, 52, 100.0, label_height=80.0,
                  label_at=0.59))

    north = w.drive(Block('NORTH SUBMAIN', (420.0, 240.0), 90.0, 5, 70.0, 26, 90.0,
                          stubs=(60, 35, 70, 20, 45), label_height=42.0, label_at=0.385))
    careful = dict(entry_spacing=60.0, spacing=70.0)
    # left of the submain, outby to inby: old works, a chevron panel, a square one
    w.drive_panel(north, '1 WEST', 6, +1, NECK,
                  dict(entries=9, entry_spacing=55.0, crosscuts=40, spacing=60.0, scatter=2.2))
    w.drive_panel(north, '2 WEST', 14, +1, NECK,
                  dict(entries=9, crosscuts=40, angle=62.0, chevron=True, **careful))
    w.drive_panel(north, '3 WEST', 22, +1, NECK,
                  dict(entries=7, entry_spacing=70.0, crosscuts=40, spacing=80.0))
    # right of it: a panel pulled on retreat, an angled one, the working section
    w.drive_panel(north, '1 EAST', 6, -1, NECK,
                  dict(entries=8, crosscuts=25, extracted=(0, 15, 15, 14, 13, 12, 0), **careful))
    w.drive_panel(north, '2 EAST', 14, -1, NECK,
                  dict(entries=8, crosscuts=24, angle=70.0, **careful))
    w.drive_panel(north, '3 EAST', 22, -1, NECK,
                  dict(entries=8, crosscuts=15, stubs=(40, 70, 55, 20, 65, 30, 50, 15), **careful))

    south = w.drive(Block('SOUTH SUBMAIN', (1180.0, -240.0), -90.0, 5, 70.0, 26, 90.0,
                          stubs=(20, 60, 30, 50, 10), label_height=42.0, label_at=0.385))
    w.drive_panel(south, '1 RIGHT', 6, -1, NECK,
                  dict(entries=8, entry_spacing=55.0, crosscuts=14, spacing=65.0, scatter=1.8))
    w.drive_panel(south, '2 RIGHT', 14, -1, NECK,
                  dict(entries=8, crosscuts=13, **careful))
    w.drive_panel(south, '3 RIGHT', 21, -1, NECK,
                  dict(entries=7, crosscuts=13, angle=75.0, **careful))
    w.drive_panel(south, '1 LEFT', 6, +1, NECK,
                  dict(entries=8, crosscuts=16, extracted=(0, 9, 9, 9, 8, 7, 0), **careful))
    w.drive_panel(south, '2 LEFT', 14, +1, NECK,
                  dict(entries=9, crosscuts=16, angle=60.0, chevron=True, **careful))
    w.drive_panel(south, '3 LEFT', 21, +1, NECK,
                  dict(entries=7, entry_spacing=65.0, crosscuts=12, spacing=75.0,
                       stubs=(30, 10, 55, 40, 60, 25, 45)))

    # two longwall panels between three gates, with a bleeder behind them
    gates = (-2330.0, -1310.0, -290.0)
    bleeder_top, stop = -2210.0, -560.0
    for number, u in enumerate(gates, 1):
        w.drive(Block(f'GATE {number}', (u, -240.0), -90.0, 3, 80.0, 16, 123.0))
    w.drive(Block('BLEEDER', (gates[0], bleeder_top - 140.0), 0.0, 3, 70.0, 22,
                  100.0))
    half = ENTRY_WIDTH / 2
    for left, right, face in ((gates[0], gates[1], stop), (gates[1], gates[2], -1180.0)):
        w.longwall(left + 160.0 + half, right - half, bleeder_top, stop, face)
    return w
