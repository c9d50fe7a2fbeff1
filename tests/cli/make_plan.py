"""make_plan.py OUT.dxf: a small plan as another program writes it: square pillars in metres, some of
them in old-style polylines and some with rounded corners, and an outline over the western half on
the working layer. Binary, release 2013."""
import sys

import ezdxf

QUARTER_TURN = 2 ** 0.5 - 1  # the bulge of a quarter circle


def rounded(x, y):
    return [(x + 3, y, 0), (x + 15, y, QUARTER_TURN), (x + 18, y + 3, 0),
            (x + 18, y + 15, QUARTER_TURN), (x + 15, y + 18, 0), (x + 3, y + 18, QUARTER_TURN),
            (x, y + 15, 0), (x, y + 3, QUARTER_TURN)]


doc = ezdxf.new("R2013")
doc.layers.add("COAL", color=8)
doc.layers.add("ZELK_Working_Layer", color=7)
space = doc.modelspace()
for row in range(6):
    for column in range(8):
        x, y = 30 * column + 6, 30 * row + 6
        corners = [(x, y), (x + 18, y), (x + 18, y + 18), (x, y + 18)]
        attributes = {"layer": "COAL"}
        if row % 3 == 0:
            space.add_polyline2d(corners, close=True, dxfattribs=attributes)
        elif row % 3 == 1:
            space.add_lwpolyline(rounded(x, y), format="xyb", close=True, dxfattribs=attributes)
        else:
            space.add_lwpolyline(corners, close=True, dxfattribs=attributes)
space.add_lwpolyline([(-5, -5), (120, -5), (120, 200), (-5, 200)], close=True,
                     dxfattribs={"layer": "ZELK_Working_Layer"})
space.add_spline([(0, 0), (40, 90), (200, 100)], dxfattribs={"layer": "FAULT"})
doc.saveas(sys.argv[1], fmt="bin")
