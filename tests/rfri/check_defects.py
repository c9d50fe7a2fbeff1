#!/usr/bin/python3
"""check_defects.py FILE OUT: prints layer and constant width of each light polyline of a drawing, and
writes the drawing again with a level of -5 on all of them."""
import sys

import ezdxf

document = ezdxf.readfile(sys.argv[1])
for polyline in document.modelspace().query('LWPOLYLINE'):
    print(polyline.dxf.layer, polyline.dxf.const_width)
    polyline.dxf.const_width = -5
document.saveas(sys.argv[2])
