#!/usr/bin/env python3
"""Builds the example airport LMML.BGR and LMML.PLY from the OpenStreetMap
extract of Malta International (runway and taxiway centre lines, aprons), and
the airport script LMML.txt that builds the same airport with bgrtool -te.

Usage: python3 examples/make_lmml.py [path/to/LMML.geojson] [output folder]
(the extract beside this script, examples/LMML.geojson, by default)
"""
import json
import math
import os
import struct
import sys

FEET_PER_DEGREE_LAT = 364000.0  # about 111 km per degree
RUNWAY_WIDTH = {"05/23": 148, "13/31": 197}
TAXIWAY_WIDTH = 75


def tag(text):
    return text.encode() + b"\0"


def width_word(width, flags):
    width = max(25, min(500, width))
    return ((width * 128) // 50 + 16840) << 16 | flags


def main():
    here = os.path.dirname(os.path.abspath(__file__))
    source = sys.argv[1] if len(sys.argv) > 1 else os.path.join(here, "LMML.geojson")
    out_dir = sys.argv[2] if len(sys.argv) > 2 else here
    features = json.load(open(source))["features"]
    ways = [f for f in features if f["geometry"]["type"] == "LineString"
            and f["properties"].get("aeroway") in ("runway", "taxiway")]
    aprons = [f for f in features if f["geometry"]["type"] == "Polygon" and f["properties"].get("aeroway") == "apron"]

    runway_points = [p for f in ways if f["properties"]["aeroway"] == "runway" for p in f["geometry"]["coordinates"]]
    lon0 = sum(p[0] for p in runway_points) / len(runway_points)
    lat0 = sum(p[1] for p in runway_points) / len(runway_points)
    east_per_degree = FEET_PER_DEGREE_LAT * math.cos(math.radians(lat0))

    def feet(lon, lat):
        return round((lon - lon0) * east_per_degree), round((lat - lat0) * FEET_PER_DEGREE_LAT)

    index = {}
    nodes = []
    edges = []
    for way in ways:
        props = way["properties"]
        is_runway = props["aeroway"] == "runway"
        width = RUNWAY_WIDTH.get(props.get("ref"), 150) if is_runway else TAXIWAY_WIDTH
        numbers = []
        for node_id, (lon, lat) in zip(props["node_ids"], way["geometry"]["coordinates"]):
            if node_id not in index:
                index[node_id] = len(nodes)
                nodes.append(feet(lon, lat))
            numbers.append(index[node_id])
        if is_runway:
            # one edge from end to end: the job snaps the taxiways that meet it
            # on to its centre line and makes their exit stubs
            edges.append((numbers[0], numbers[-1], width_word(width, 15), 0))
            continue
        for a, b in zip(numbers, numbers[1:]):
            if a != b:
                edges.append((a, b, width_word(width, 15), 1))

    data = tag("<bgno>") + tag("<orgn>") + struct.pack("<dddi", lat0 * 3600.0, lon0 * 3600.0, 0.0, 1)
    for x, z in nodes:
        data += tag("<node>") + tag("<bgno>") + tag("<vloc>") + struct.pack("<ddd", x, 0.0, z) + tag("<endo>")
    for a, b, word, kind in edges:
        data += tag("<edge>") + struct.pack("<ii", a, b) + tag("<bgno>") + tag("<thck>") + struct.pack("<i", word)
        data += tag("<type>") + struct.pack("<i", kind) + tag("<endo>")
    data += tag("<endo>")
    with open(os.path.join(out_dir, "LMML.BGR"), "wb") as f:
        f.write(data)

    with open(os.path.join(out_dir, "LMML.PLY"), "w", newline="\n") as f:
        f.write("ORG %f %f\n" % (lat0 * 3600.0, lon0 * 3600.0))
        write_aprons(f, aprons, feet, "POI %d %d\n")
    write_script(os.path.join(out_dir, "LMML.txt"), ways, aprons, lat0, lon0, feet)
    print("LMML.BGR: %d nodes, %d edges; LMML.PLY: %d aprons; LMML.txt" % (len(nodes), len(edges), len(aprons)))


def write_aprons(f, aprons, feet, corner):
    """Each apron ring, without its closing repeat, as corner lines and a PLY line."""
    for number, apron in enumerate(aprons):
        ring = apron["geometry"]["coordinates"][0]
        if ring[0] == ring[-1]:
            ring = ring[:-1]
        for lon, lat in ring:
            f.write(corner % feet(lon, lat))
        f.write('PLY "apron%d"\n' % number)


def angle(degrees, positive, negative):
    seconds = abs(degrees) * 3600.0
    d = int(seconds // 3600)
    m = int((seconds - d * 3600) // 60)
    return "%s%d:%d:%.4f" % (positive if degrees >= 0 else negative, d, m, seconds - d * 3600 - m * 60)


def write_script(path, ways, aprons, lat0, lon0, feet):
    """Runways by the positions of their ends, then, from one reference point,
    the taxiways as pen lines and the aprons as polygons, in feet."""
    with open(path, "w", newline="\n") as f:
        f.write("SRC \"examples\\LMML.geojson\"\n")
        for way in ways:
            props = way["properties"]
            if props["aeroway"] != "runway":
                continue
            (lon1, lat1), (lon2, lat2) = way["geometry"]["coordinates"][0], way["geometry"]["coordinates"][-1]
            x1, z1 = feet(lon1, lat1)
            x2, z2 = feet(lon2, lat2)
            length = round(math.hypot(x2 - x1, z2 - z1))
            ends = (props.get("ref") or "x/x").split("/") + ["x"]
            f.write("RWY %s %s x x %d %d %s %s %s %s\n" % (ends[0], ends[1], length,
                    RUNWAY_WIDTH.get(props.get("ref"), 150), angle(lat1, "N", "S"), angle(lon1, "E", "W"),
                    angle(lat2, "N", "S"), angle(lon2, "E", "W")))
        f.write("REF %s %s\n" % (angle(lat0, "N", "S"), angle(lon0, "E", "W")))
        for way in ways:
            if way["properties"]["aeroway"] != "taxiway":
                continue
            for k, (lon, lat) in enumerate(way["geometry"]["coordinates"]):
                x, z = feet(lon, lat)
                f.write("%s %d 0 %d %d 15\n" % ("MOV" if k == 0 else "LIN", x, z, TAXIWAY_WIDTH))
        write_aprons(f, aprons, feet, "POI %d 0 %d\n")
        f.write("EXI\n")


if __name__ == "__main__":
    main()
