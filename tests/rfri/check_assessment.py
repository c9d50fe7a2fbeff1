#!/usr/bin/python3
"""check_assessment.py FILE OUT: prints the assessment on the last polyline of a drawing, item by
item, and writes the drawing again with another label and level."""
import sys

import ezdxf

APPLICATION = 'RFRI_DXR_NOISH_APPLICATION'

document = ezdxf.readfile(sys.argv[1])
polyline = document.modelspace().query('LWPOLYLINE')[-1]
items = polyline.xdata.get(APPLICATION)
print('registered', int(APPLICATION in document.appids))
print('items', len(items))
for k, item in enumerate(items):
    print(k, item.code, item.value)
texts = [item.value for item in items]
texts[1] = '(5) Multiple Weak Contacts'
texts[13] = 'BY ANOTHER'
polyline.set_xdata(APPLICATION, [(item.code, text) for item, text in zip(items, texts)][1:])
document.saveas(sys.argv[2])
