# Audits a DXF file with ezdxf and prints what was found, then every text and every vertex of a ground line.
import sys

import ezdxf

drawing = ezdxf.readfile(sys.argv[1])
audit = drawing.audit()
print("errors", len(audit.errors), "fixes", len(audit.fixes))
for text in drawing.modelspace().query("TEXT"):
    print("text", text.dxf.layer, text.plain_text())
for line in drawing.modelspace().query("POLYLINE[layer=='GROUND']"):
    print("line")
    for vertex in line.vertices:
        print("vertex", vertex.dxf.location.x, vertex.dxf.location.y)
