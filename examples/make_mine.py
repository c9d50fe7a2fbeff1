#!/usr/bin/python3
"""Draws the example mine: make_mine.py [OUT.dxf]

A made-up room-and-pillar and longwall mine of about a square mile, in feet and in coordinates of
the size that state-plane systems give. The same file comes out every time. Needs python3-ezdxf and
python3-shapely (scripts/setup.sh installs both).

    mine/workings.py   entries, pillars, gobs and the coal that stays
    mine/upper_seam.py an old mine in the seam above
    mine/ground.py     surface, valley, ponds, faults, seam, drill holes
    make_mine.py       layers and drawing objects
"""

import math
import pathlib
import random
import sys

import ezdxf
from shapely.affinity import rotate, translate

from mine import ground, upper_seam, workings

CORNER = (1420000.0, 312000.0)  # the property's south-west corner
TURN = 8.0                      # degrees from east to the mains
SEED = 1907

# name, colour index, linetype, line weight in hundredths of a millimetre
LAYERS = [
    ('PILLARS', 8, 'CONTINUOUS', 13),
    ('BARRIERS', 8, 'CONTINUOUS', 18),
    ('SOLID_COAL', 9, 'CONTINUOUS', 13),
    ('GOB', 32, 'CONTINUOUS', 25),
    ('PROPERTY', 7, 'PHANTOM', 50),
    ('BELTS', 30, 'DASHED', 25),
    ('ENTRY_CENTERLINES', 254, 'CONTINUOUS', 9),
    ('SHAFTS', 6, 'CONTINUOUS', 35),
    ('VALLEY', 104, 'CONTINUOUS', 35),
    ('STREAM', 150, 'CONTINUOUS', 25),
    ('PONDS', 5, 'CONTINUOUS', 30),
    ('FAULTS', 1, 'CONTINUOUS', 35),
    ('DRILLHOLES', 200, 'CONTINUOUS', 18),
    ('DH_ROOF_SHALE', 200, 'CONTINUOUS', 18),
    ('DH_ROOF_STRENGTH', 200, 'CONTINUOUS', 18),
    ('SURFACE_CONTOURS', 43, 'CONTINUOUS', 9),
    ('SEAM_CONTOURS', 134, 'DASHED', 13),
    ('ROOF_ASSESSMENT', 4, 'CONTINUOUS', 18),
    ('LABELS', 7, 'CONTINUOUS', 18),
]


# Added after everything else, so that what was there before keeps its handles.
UPPER_LAYERS = [
    ('UPPER_PILLARS', 253, 'CONTINUOUS', 9),
    ('UPPER_GOB', 253, 'DASHED', 13),
]


class Plan:
    """The drawing, with points given in the property's frame or in the mine's."""

    def __init__(self):
        ezdxf.options.write_fixed_meta_data_for_testing = True
        self.document = ezdxf.new('R2010', setup=['linetypes'])
        self.document.header['$INSUNITS'] = 2  # feet
        self.document.header['$MEASUREMENT'] = 0
        self.document.header['$LTSCALE'] = 60.0
        self.document.header['$PDMODE'] = 34
        self.document.header['$PDSIZE'] = 18.0
        self.space = self.document.modelspace()
        self.add_layers(LAYERS)

    def add_layers(self, layers):
        for name, colour, linetype, weight in layers:
            self.document.layers.add(name, color=colour, linetype=linetype, lineweight=weight)

    @staticmethod
    def world(point):
        return tuple(round(c + o, 3) for c, o in zip(point, CORNER))

    @staticmethod
    def from_mine(point):
        """From the mine's frame, in the middle of the property, into the property's."""
        c, s = math.cos(math.radians(TURN)), math.sin(math.radians(TURN))
        return (ground.WIDTH / 2 + c * point[0] - s * point[1],
                ground.HEIGHT / 2 + s * point[0] + c * point[1])

    def polyline(self, layer, points, bulges=None, closed=True, **attributes):
        bulges = bulges or [0.0] * len(points)
        data = [(*self.world(p), b) for p, b in zip(points, bulges)]
        return self.space.add_lwpolyline(data, format='xyb', close=closed,
                                         dxfattribs={'layer': layer, **attributes})

    def text(self, layer, text, point, height, turn=0.0, align='MIDDLE_CENTER'):
        self.space.add_text(text, dxfattribs={'layer': layer, 'height': height, 'rotation': turn}) \
            .set_pos(self.world(point), align=align)

    def circle(self, layer, point, radius):
        self.space.add_circle(self.world(point), radius, dxfattribs={'layer': layer})

    def line(self, layer, start, end):
        self.space.add_line(self.world(start), self.world(end), dxfattribs={'layer': layer})


def readable(turn):
    """The angle of a text, turned so that it is not upside down."""
    turn %= 360.0
    return turn - 180.0 if 90.0 < turn <= 270.0 else turn


def draw_workings(plan, mine):
    def outlines(layer, items):
        for item in items:
            plan.polyline(layer, [plan.from_mine(p) for p in item.points], item.bulges)

    outlines('PILLARS', mine.pillars())
    barriers, solid = mine.unmined()
    outlines('BARRIERS', barriers)
    outlines('SOLID_COAL', solid)
    outlines('GOB', mine.gob_outlines())
    for block in mine.blocks:
        draw_center_lines(plan, block)
        if not block.name.endswith('neck'):
            draw_block_label(plan, block)


def draw_center_lines(plan, block):
    for j in range(block.entries):
        t = j * block.entry_spacing
        stub = block.stubs[j] if block.stubs else 0.0
        plan.line('ENTRY_CENTERLINES', plan.from_mine(block.at(0.0, t)),
                  plan.from_mine(block.at(block.crosscut(block.crosscuts, t) + stub, t)))


def draw_block_label(plan, block):
    """The block's name, in the coal to the right of the drive."""
    beside = block.at(block.crosscuts * block.spacing * block.label_at,
                      -30.0 - 0.8 * block.label_height)
    plan.text('LABELS', block.name, plan.from_mine(beside), block.label_height,
              readable(block.heading + TURN))


def draw_belts(plan, mine):
    for block in mine.blocks:
        if block.name.startswith(('WEST', 'NORTH', 'SOUTH')) or block.name[0].isdigit():
            t = (block.entries // 2) * block.entry_spacing
            end = block.crosscut(block.crosscuts, t) - block.spacing
            plan.polyline('BELTS', [plan.from_mine(block.at(0.0, t)),
                                    plan.from_mine(block.at(end, t))], closed=False)


def draw_gob_labels(plan):
    for text, u, v in (('1 LONGWALL (GOB)', -1740.0, -1350.0),
                       ('2 LONGWALL (GOB)', -720.0, -1700.0), ('2 LONGWALL PANEL', -720.0, -860.0),
                       ('GOB', 1500.0, 780.0), ('GOB', 2250.0, -790.0)):
        plan.text('LABELS', text, plan.from_mine((u, v)), 60.0, TURN)


def draw_shafts(plan):
    for name, u, v, radius in (('INTAKE SHAFT', -2010.0, 200.0, 12.0),
                               ('MAN SHAFT', 890.0, -200.0, 10.0),
                               ('BLEEDER SHAFT', -280.0, -2315.0, 9.0)):
        plan.circle('SHAFTS', plan.from_mine((u, v)), radius)
        plan.circle('SHAFTS', plan.from_mine((u, v)), radius * 2)
        plan.text('LABELS', name, plan.from_mine((u + 3.2 * radius, v)), 36.0, TURN, 'MIDDLE_LEFT')


def draw_assessments(plan):
    """Outlines along the mains in which the roof is to be rated."""
    for k in range(2, 50, 4):
        u, v = -2560.0 + 100.0 * k, -90.0 + 80.0 * (k // 4 % 3)
        corners = [(u - 8.0, v - 1.0), (u + 188.0, v - 1.0),
                   (u + 188.0, v + 22.0), (u - 8.0, v + 22.0)]
        plan.polyline('ROOF_ASSESSMENT', [plan.from_mine(p) for p in corners])


def draw_surface(plan):
    plan.polyline('VALLEY', ground.valley())
    for points in (ground.STREAM_LINE, ground.BRANCH_LINE):
        inside = points.intersection(ground.rectangle(0.0))
        plan.polyline('STREAM', list(inside.coords), closed=False)
    for name, shore in ground.PONDS.items():
        plan.polyline('PONDS', shore)
        middle = tuple(sum(c) / len(shore) for c in zip(*shore))
        plan.text('LABELS', name, middle, 40.0)


def draw_contours(plan, layer, height, step, labelled):
    for level, points in ground.contours(height, step):
        closed = points[0] == points[-1]
        plan.polyline(layer, points[:-1] if closed else points, closed=closed, elevation=level)
        if level % labelled == 0.0 and len(points) > 24:
            k = len(points) // 2
            a, b = points[k - 1], points[k + 1]
            turn = math.degrees(math.atan2(b[1] - a[1], b[0] - a[0]))
            plan.text(layer, f'{level:g}', points[k], 32.0, readable(turn))


def draw_faults(plan):
    for i, (name, throw, points) in enumerate(ground.FAULTS):
        line = [p[:2] for p in points]
        bulges = [p[2] for p in points]
        if i + 1 < len(ground.FAULTS):
            plan.polyline('FAULTS', line, bulges, closed=False)
        else:
            plan.space.add_polyline2d([(*plan.world(p), b) for p, b in zip(line, bulges)],
                                      format='xyb', dxfattribs={'layer': 'FAULTS'})
        (x0, y0), (x1, y1) = line[0], line[1]
        turn = readable(math.degrees(math.atan2(y1 - y0, x1 - x0)))
        plan.text('FAULTS', f'{name} {throw} FT'.strip(), (x0 + 0.6 * (x1 - x0) + 45.0,
                                                          y0 + 0.6 * (y1 - y0)), 38.0, turn)


def draw_drill_holes(plan, chance):
    for name, x, y, shale, strength in ground.drill_holes(chance):
        plan.circle('DRILLHOLES', (x, y), 16.0)
        plan.text('DRILLHOLES', name, (x + 26.0, y + 22.0), 26.0, align='LEFT')
        plan.text('DRILLHOLES', f'{shale:.1f} FT  {strength:.0f} PSI', (x + 26.0, y - 18.0), 22.0,
                  align='LEFT')
        for layer, value in (('DH_ROOF_SHALE', shale), ('DH_ROOF_STRENGTH', strength)):
            plan.space.add_point((*plan.world((x, y)), value), dxfattribs={'layer': layer})


def draw_upper_seam(plan, property_line):
    plan.add_layers(UPPER_LAYERS)
    coal = upper_seam.pillars() + upper_seam.solid_coal(property_line)
    for layer, outlines in (('UPPER_PILLARS', coal), ('UPPER_GOB', upper_seam.GOBS)):
        for outline in outlines:
            plan.polyline(layer, [plan.from_mine(p) for p in workings.ring(outline)])


def main():
    folder = pathlib.Path(__file__).parent
    target = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else folder / 'mine.dxf'
    chance = random.Random(SEED)
    plan = Plan()

    boundary = ground.rectangle(0.0)
    in_mine_frame = rotate(translate(boundary, -ground.WIDTH / 2, -ground.HEIGHT / 2), -TURN,
                           origin=(0, 0))
    mine = workings.example_workings(in_mine_frame, chance)

    plan.polyline('PROPERTY', workings.ring(boundary))
    # first what the scripts pick by its handle, so that the handles stay when the rest changes
    draw_surface(plan)
    draw_faults(plan)
    draw_contours(plan, 'SURFACE_CONTOURS', ground.surface, 20.0, 100.0)
    draw_contours(plan, 'SEAM_CONTOURS', ground.seam_floor, 10.0, 10.0)
    draw_drill_holes(plan, chance)
    draw_workings(plan, mine)
    draw_belts(plan, mine)
    draw_gob_labels(plan)
    draw_shafts(plan)
    draw_assessments(plan)
    plan.text('LABELS', 'KESTREL HOLLOW MINE', (ground.WIDTH / 2, ground.HEIGHT + 150.0), 140.0)
    draw_upper_seam(plan, in_mine_frame)
    plan.document.set_modelspace_vport(height=ground.HEIGHT * 1.1,
                                       center=plan.world((ground.WIDTH / 2, ground.HEIGHT / 2)))
    plan.document.saveas(target)
    pillars = plan.space.query('*[layer=="PILLARS"]')
    print(f'{target}: {len(pillars)} pillars, {target.stat().st_size / 1e6:.1f} MB')



if __name__ == '__main__':
    main()
