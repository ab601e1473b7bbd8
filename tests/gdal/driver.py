"""Holds the GDAL driver against what GDAL asks of a driver, against GeographicLib, and against what comes back from other
formats: driver.py ZEL SAMPLES_DIRECTORY"""

import math
import os
import random
import shutil
import subprocess
import sys
import tempfile
import unittest

from geographiclib.geodesic import Geodesic
from osgeo import gdal, ogr, osr

ZEL, SAMPLES = map(os.path.abspath, sys.argv[1:3])
EARTH = Geodesic.WGS84
PLACES = [(0, 0), (64, 179.9), (89.9, 20), (-89.9, 20)]
KEPT = {"start", "end", "filled", "off"}


def setUpModule():
    gdal.UseExceptions()
    ogr.UseExceptions()
    gdal.PushErrorHandler("CPLQuietErrorHandler")
    # Polygons may cross themselves.
    gdal.SetConfigOption("LIBKML_STRICT_COMPLIANCE", "NO")


class Messages:
    """What GDAL is told meanwhile."""

    def __enter__(self):
        self.texts = []
        gdal.PushErrorHandler(lambda level, number, text: self.texts.append(text))
        return self.texts

    def __exit__(self, *_):
        gdal.PopErrorHandler()


class Case(unittest.TestCase):
    def setUp(self):
        self.directory = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.directory)

    def path(self, name):
        return os.path.join(self.directory, name)

    def file(self, text, name="in.zel"):
        with open(self.path(name), "wb") as out:
            out.write(text if isinstance(text, bytes) else text.encode())
        return self.path(name)

    def open(self, file, *options):
        return gdal.OpenEx(file, gdal.OF_VECTOR, open_options=list(options))

    def shape(self, *lines, options=()):
        """The only feature of a file that holds one block."""
        self.dataset = self.open(self.file("\n".join(["start", *lines, "end\n"])), *options)
        return self.dataset.GetLayer(0).GetNextFeature()

    def outline(self, *lines, options=()):
        feature = self.shape(*lines, options=options)
        return feature.GetGeometryRef().Clone()

    def convert(self, source, target, **options):
        """Through GDAL's own converter; the path of the target."""
        target = self.path(target)
        self.assertIsNotNone(gdal.VectorTranslate(target, source, **options))
        return target

    def blocks(self, file):
        """The blocks as the library writes them, in the file's order."""
        # It ends with 1 where it warns.
        text = subprocess.run([ZEL, "format", file], capture_output=True).stdout.decode()
        # A blank may be written in two ways.
        lines = [line.replace("_", " ") if line.startswith("annotation") else line for line in text.split("\n")]
        return [block.split("\n") for block in "\n".join(lines).split("start\n")[1:]]

    def assertSameBlocks(self, ours, theirs, what):
        self.assertEqual(len(ours), len(theirs), what)
        for a, b in zip(ours, theirs):
            self.assertEqual(len(a), len(b), (what, a, b))
            for left, right in zip(a, b):
                if left != right:
                    for x, y in zip(left.split(), right.split(), strict=True):
                        if x != y:
                            self.assertAlmostEqual(float(x), float(y), delta=max(1e-9, 1e-14 * abs(float(x))), msg=(what, a, b))


def rings(geometry):
    """All lines and rings below, as lists of (longitude, latitude, altitude)."""
    if geometry.GetGeometryCount() == 0:
        return [geometry.GetPoints()] if geometry.GetPointCount() > 1 else []
    return [ring for i in range(geometry.GetGeometryCount()) for ring in rings(geometry.GetGeometryRef(i))]


def on_seam(a, b):
    return abs(a[0]) == abs(b[0]) == 180 or abs(a[1]) == abs(b[1]) == 90


def contains(geometry, lat, lon):
    point = ogr.Geometry(ogr.wkbPoint)
    point.AddPoint_2D(lon, lat)
    return geometry.Contains(point)


class Outlines(Case):
    """Sampled outlines lie on the true curve: along straight lines of the map and along geodesics."""

    def sampled(self, geometry, count=150):
        edges = [(a, b) for ring in rings(geometry) for a, b in zip(ring, ring[1:]) if not on_seam(a, b)]
        # The shortest ones matter least; a few of all.
        for a, b in random.Random(1).sample(edges, min(count, len(edges))):
            yield a[1], a[0]
            for share in (0.25, 0.5, 0.8):
                yield a[1] + share * (b[1] - a[1]), a[0] + share * (b[0] - a[0])
            line = EARTH.InverseLine(a[1], a[0], b[1], b[0])
            middle = line.Position(0.5 * line.s13)
            yield middle["lat2"], middle["lon2"]

    def test_circles_of_all_sizes_at_all_places(self):
        for lat, lon in PLACES:
            for radius in (1, 300, 11_132, 80_000, 1_000_000, 5_000_000):
                for wanted in (None, 0.5 * radius ** 0.5):
                    tolerance = wanted or min(1, 1e-4 * radius)
                    options = [f"TOLERANCE={wanted}"] if wanted else []
                    geometry = self.outline("circle", f"centerll {lat} {lon}", f"radius {radius}", "rangeunits m",
                                            options=options)
                    where = (lat, lon, radius, wanted)
                    self.assertTrue(geometry.IsValid(), where)
                    self.assertTrue(contains(geometry, lat, lon), where)
                    self.assertFalse(contains(geometry, -lat, lon - 180 if lon > 0 else lon + 179), where)
                    for x, y in self.sampled(geometry):
                        away = EARTH.Inverse(lat, lon, x, y)["s12"]
                        self.assertLess(abs(away - radius), tolerance, where)
                    west, east, south, north = geometry.GetEnvelope()
                    self.assertTrue(west >= -180 and east <= 180 and south >= -90 and north <= 90, where)

    def test_other_curves(self):
        def across(radius):
            """From a point to a curve about the centre, across it: what is missing along the ray, less its slope."""
            def distance(x, y):
                way = EARTH.Inverse(lat, lon, x, y)
                azimuth, step = math.radians(way["azi1"]), 1e-6
                slope = (radius(azimuth + step) - radius(azimuth - step)) / (2 * step)
                return abs(way["s12"] - radius(azimuth)) * radius(azimuth) / math.hypot(radius(azimuth), slope)
            return distance

        def axes(azimuth):
            return 1 / math.hypot(math.sin(azimuth - math.radians(30)) / 40e3, math.cos(azimuth - math.radians(30)) / 20e3)

        def beside(line, x, y):
            """From a point to a geodesic, and whether its foot lies on it."""
            at = 0
            for _ in range(5):
                foot = line.Position(at)
                way = EARTH.Inverse(foot["lat2"], foot["lon2"], x, y)
                at += way["s12"] * math.cos(math.radians(way["azi1"] - foot["azi2"]))
            return way["s12"] if 0 <= at <= line.s13 else math.inf

        for lat, lon in PLACES:
            for lines, distance in ((["arc", "anglestart 300", "angledeg 250"], across(lambda azimuth: 50_000)),
                                    (["ellipse", "majoraxis 80000", "minoraxis 40000", "orient 30"], across(axes))):
                geometry = self.outline(*lines, f"centerll {lat} {lon}", "radius 50000", "rangeunits m")
                for x, y in self.sampled(geometry):
                    self.assertLess(distance(x, y), 1, (lines, lat, lon))
            way = EARTH.Direct(lat, lon, 70, 90_000)
            ends = ((lat, lon), (way["lat2"], way["lon2"]))
            tangents = [[EARTH.Direct(*end, azimuth + side, 20_000) for end, azimuth in zip(ends, (70, way["azi2"]))]
                        for side in (-90, 90)]
            sides = [EARTH.InverseLine(a["lat2"], a["lon2"], b["lat2"], b["lon2"]) for a, b in tangents]
            orbit = self.outline("orbit", f"centerll {lat} {lon}", f"centerll2 {ends[1][0]!r} {ends[1][1]!r}",
                                 "radius 20000", "rangeunits m")
            self.assertTrue(orbit.IsValid())
            slice = self.outline("cylinder", f"centerll {lat} {lon}", "radius 20000", "rangeunits m", "anglestart 30",
                                 "angledeg 70")
            rays = [EARTH.DirectLine(lat, lon, azimuth, 20_000) for azimuth in (30, 100)]
            for x, y in self.sampled(slice):
                self.assertLess(min([across(lambda azimuth: 20_000)(x, y)] + [beside(ray, x, y) for ray in rays]), 1,
                                (lat, lon))
            for x, y in self.sampled(orbit):
                self.assertLess(min([abs(EARTH.Inverse(*end, x, y)["s12"] - 20_000) for end in ends]
                                    + [beside(side, x, y) for side in sides]), 1, (lat, lon))

    def test_wedges_at_the_pole_and_boxes_round_the_world_are_closed(self):
        wedge = self.outline("cylinder", "centerll 90 0", "radius 1000", "rangeunits km", "anglestart 20",
                           "angledeg 300")
        self.assertTrue(wedge.IsValid())
        inside = [lon for lon in range(-175, 180, 10) if contains(wedge, 85, lon)]
        self.assertEqual(len(inside), 30)
        band = self.outline("latlonaltbox 20 10 170 -170 0")
        self.assertEqual(band.GetEnvelope(), (-180, 180, 10, 20))
        self.assertTrue(contains(band, 15, 175) and contains(band, 15, -175) and not contains(band, 15, 0))
        kept = self.outline("latlonaltbox 20 10 170 -170 0", options=["SPLIT=NO"])
        self.assertEqual(kept.GetEnvelope(), (170, 190, 10, 20))
        far = self.outline("circle", "centerll 0 0", "radius 15000", "rangeunits km")
        self.assertTrue(contains(far, 80, 10) and contains(far, -80, 10) and not contains(far, 0, 179))
        line = self.outline("line", "ll 10 170", "ll 20 -170", "ll 30 -160")
        self.assertEqual(line.ExportToIsoWkt(),
                         "MULTILINESTRING Z ((170 10 0,180 15 0),(-180 15 0,-170 20 0,-160 30 0))")
        corners = ((0, 170), (0, -170), (1, -170), (1, 175), (2, 175), (2, -170), (3, -170), (3, 170))
        comb = self.outline("polygon", *(f"ll {x} {y}" for x, y in corners))
        self.assertTrue(comb.IsValid())
        self.assertEqual(comb.GetGeometryCount(), 3)
        self.assertAlmostEqual(comb.GetArea(), 60 - 15)


class Driver(Case):
    """What GDAL asks of a driver."""

    def test_random_reads_counts_and_filters_of_every_layer(self):
        for name in sorted(os.listdir(SAMPLES)):
            if not name.endswith(".zel"):
                continue
            for options in ([], ["LAYERS=ALL"]):
                dataset = self.open(os.path.join(SAMPLES, name), *options)
                total = sum(dataset.GetLayer(i).GetFeatureCount() for i in range(dataset.GetLayerCount()))
                self.assertEqual(total, len(self.blocks(os.path.join(SAMPLES, name))))
                for i in range(dataset.GetLayerCount()):
                    self.check_layer(dataset, dataset.GetLayer(i))

    def check_layer(self, dataset, layer):
        features = [feature.Clone() for feature in layer]
        count = layer.GetFeatureCount()
        self.assertEqual([f.GetFID() for f in features], list(range(count)))
        self.assertIsNone(layer.GetNextFeature())
        for i in random.Random(2).sample(range(count), min(5, count)):
            self.assertTrue(layer.GetFeature(i).Equal(features[i]))
            layer.SetNextByIndex(i)
            self.assertTrue(layer.GetNextFeature().Equal(features[i]))
        for i in (-1, count):
            self.assertIsNone(layer.GetFeature(i))
            with self.assertRaises(RuntimeError):
                layer.SetNextByIndex(i)
        placed = [f for f in features if f.GetGeometryRef()]
        if placed:
            west, east, south, north = layer.GetExtent()
            boxes = [f.GetGeometryRef().GetEnvelope() for f in placed]
            self.assertEqual((west, east, south, north), (min(b[0] for b in boxes), max(b[1] for b in boxes),
                                                          min(b[2] for b in boxes), max(b[3] for b in boxes)))
            for wish in (boxes[0], (west - 2, west - 1, south, north)):
                layer.SetSpatialFilterRect(wish[0], wish[2], wish[1], wish[3])
                self.assertEqual(layer.TestCapability(ogr.OLCFastFeatureCount), 0)
                found = [f.GetFID() for f in layer]
                self.assertEqual(layer.GetFeatureCount(), len(found))
                box = layer.GetSpatialFilter()
                self.assertEqual(found, [f.GetFID() for f in placed if f.GetGeometryRef().Intersects(box)])
                layer.SetSpatialFilter(None)
        last = features[-1]
        layer.SetAttributeFilter(f"src_line = {last['src_line']}")
        self.assertEqual([f.GetFID() for f in layer], [last.GetFID()])
        layer.SetAttributeFilter(None)
        name = layer.GetName()
        for dialect in ("OGRSQL", "SQLITE"):
            answer = dataset.ExecuteSQL(f'SELECT COUNT(*) AS n, MIN(src_line) AS first FROM "{name}"', dialect=dialect)
            row = answer.GetNextFeature()
            self.assertEqual((row["n"], row["first"]), (count, min(f["src_line"] for f in features)))
            dataset.ReleaseResultSet(answer)
        layer.SetIgnoredFields(["OGR_GEOMETRY", "OGR_STYLE", "name"])
        layer.ResetReading()
        bare = layer.GetNextFeature()
        self.assertIsNone(bare.GetGeometryRef())
        layer.SetIgnoredFields([])

    def test_what_cannot_be_done_is_refused(self):
        file = self.file("start\ncircle\ncenterll 1 2\nradius 3\nend\n")
        dataset = self.open(file)
        layer = dataset.GetLayer(0)
        for capability in (ogr.OLCSequentialWrite, ogr.OLCRandomWrite, ogr.OLCDeleteFeature, ogr.OLCTransactions,
                           ogr.OLCCreateField):
            self.assertFalse(layer.TestCapability(capability), capability)
        feature = layer.GetFeature(0)
        for act in (lambda: layer.CreateFeature(feature), lambda: layer.SetFeature(feature), lambda: layer.DeleteFeature(0),
                    lambda: layer.CreateField(ogr.FieldDefn("x")), dataset.StartTransaction,
                    lambda: dataset.CreateLayer("x"), lambda: gdal.OpenEx(file, gdal.OF_VECTOR | gdal.OF_UPDATE),
                    lambda: self.open(file, "TOLERANCE=-1"), lambda: self.open(file, "ABOUT=north"),
                    lambda: self.open(self.file(b"\x00\x01\xff" * 99, "rubbish.zel")),
                    lambda: self.open(self.file("started\n", "other.txt"))):
            with self.assertRaises(RuntimeError):
                act()

    def test_a_file_is_known_by_its_suffix_or_by_its_first_lines(self):
        for name, text, known in (("a.ZEL", "", True), ("b.txt", "\ufeff// c\n\nversion 2\r\nSTART\r\ncircle\r\nend\r\n", True),
                                  ("c.txt", "version 2\n", False), ("d.txt", "start here\n", False)):
            self.assertEqual(gdal.IdentifyDriverEx(self.file(text, name), gdal.OF_VECTOR) is not None, known, name)

    def test_messages_have_file_and_line_and_the_rest_is_read(self):
        file = self.file("start\nfoo\ncircle\nend\nstart\nline\nend\nstart\npoints\nll 1 2\nend\nstart\n")
        with Messages() as texts:
            dataset = self.open(file)
        self.assertEqual(texts, [f"{file}:2: Found unknown ZEL command foo",
                                 f"{file}:5: line line has no points, cannot create shape",
                                 f"{file}:12: start without end, the block is lost"])
        self.assertEqual([dataset.GetLayer(i).GetName() for i in range(dataset.GetLayerCount())], ["points", "circle"])

    def test_columns_and_styles_tell_the_shape(self):
        feature = self.shape("arc", "centerlla 10 20 300", "radius 2", "anglestart 350", "angledeg 20", "rangeunits km",
                             "altitudeunits m", "linecolor hex 80ff0000", "linewidth 3", "linestyle dotted", "3d name A")
        expected = {"kind": "arc", "lat_deg": 10, "lon_deg": 20, "alt_m": 300, "radius_m": 2000, "start_deg": 350,
                    "sweep_deg": 20, "line_color": "#0000ff80", "line_width": 3, "line_style": "dotted", "name": "A",
                    "src_line": 1, "filled": None}
        self.assertEqual({name: feature[name] for name in expected}, expected)
        self.assertEqual(feature.GetStyleString(), 'PEN(c:#0000ff80,w:3px,p:"2px 4px")')

    def test_offsets_have_a_place_when_they_are_given_one(self):
        lines = ["line", "xyz 0 0 0", "xyz 1000 0 50", "rangeunits m", "altitudeunits m"]
        feature = self.shape(*lines)
        self.assertIsNone(feature.GetGeometryRef())
        self.assertEqual((feature["relative"], feature["points"]), (1, "(0 0 0,1000 0 50)"))
        placed = self.outline(*lines, options=["ABOUT=60,10,20"])
        self.assertEqual(placed.GetPoint(0), (10, 60, 20))
        self.assertAlmostEqual(EARTH.Inverse(60, 10, placed.GetY(1), placed.GetX(1))["s12"], 1000, delta=0.01)


def anything(random):
    """A file with shapes of all kinds, everywhere on the earth."""
    n = lambda low, high: repr(random.uniform(low, high))
    maybe = lambda *lines: [line for line in lines if random.random() < 0.4]
    out = []
    for kind in ("points", "line", "linesegs", "polygon", "arc", "circle", "ellipse", "ellipsoid", "cylinder", "sphere",
                 "hemisphere", "cone", "orbit", "annotation", "latlonaltbox", "# kml_groundoverlay"):
        lat = random.choice((random.uniform(-80, 80), 89.9, -89.9, 0))
        lon = random.choice((random.uniform(-180, 180), 179.99, -180, 0))
        on_grid = kind in ("latlonaltbox", "# kml_groundoverlay")
        relative = random.random() < 0.2 and not on_grid
        point = lambda key: (f"{key}xyz {n(-9, 9)} {n(-9, 9)} {n(-9, 9)}" if relative else
                             f"{key}lla {max(-89.95, min(89.95, lat + random.uniform(-1, 1)))!r} "
                             f"{(lon + random.uniform(-1, 1) + 540) % 360 - 180!r} {n(-99, 9999)}")
        lines = [f"latlonaltbox {lat + 0.05!r} {lat - 0.05!r} {lon!r} {lon + 0.5!r} {n(0, 99)}" if kind == "latlonaltbox" else
                 f"annotation Text_{len(out)}" if kind == "annotation" else kind]
        if kind in ("points", "line", "linesegs", "polygon"):
            lines += [point("") for _ in range(random.choice((4, 6, 8)))]
        elif kind == "annotation":
            lines += [point("")]
        elif kind == "# kml_groundoverlay":
            lines += ["# kml_icon a.png", f"# kml_latlonbox {lat + 0.05!r} {lat - 0.05!r} {lon + 0.5!r} {lon!r} {n(-1, 1)}"]
            lines += maybe("angleunits rad")
        elif not on_grid:
            lines += [point("center"), f"radius {n(0.1, 300)}"]
        if kind == "orbit":
            lines += [point("center").replace("centerlla", "centerll2").replace("centerxyz", "centerxy2")]
        if kind in ("arc", "cylinder"):
            lines += maybe(f"anglestart {n(0, 360)}", f"angledeg {n(-350, 350)}")
        if kind in ("ellipse", "ellipsoid", "cylinder"):
            lines += maybe(f"majoraxis {n(1, 400)}", f"minoraxis {n(1, 400)}", f"height {n(1, 400)}")
        if kind == "points":
            lines += maybe("pointsize 7")
        elif kind != "annotation" and not kind.startswith("#"):
            lines += maybe("linewidth 3", "linestyle dashed", "filled", "fillcolor hex 4000ff00", "outline false")
        lines += maybe("linecolor hex 80402010", f"3d name Name {len(out)}", "off", "altitudemode clamptoground",
                       "altitudeunits m", "rangeunits km", "depthbuffer false", "# a comment")
        if kind in ("circle", "ellipse"):
            lines += maybe(f"orient {n(0, 6)}", f"scale {n(0.5, 2)} {n(0.5, 2)} 1", f"3d offsetcourse {n(0, 360)}")
        if relative:
            lines += maybe(f"ref {lat!r} {lon!r} 5")
        out += ["start", *lines, "end", ""]
    return "\n".join(out)


class ThereAndBack(Case):
    def roundTrip(self, source, *formats, options=()):
        expected = self.blocks(source)
        for suffix in formats:
            middle = self.convert(self.open(source, "LAYERS=ALL", *options), f"middle.{suffix}")
            with Messages() as texts:
                back = self.convert(self.open(middle, *(["LAYERS=ALL"] if suffix == "zel" else [])), "back.zel")
            self.assertEqual([text for text in texts if "Several drivers" not in text], [], suffix)
            self.assertSameBlocks(expected, self.blocks(back), suffix)
            gdal.Unlink(middle)

    def test_the_samples(self):
        for name in ("gallery.zel", "keywords.zel"):
            self.roundTrip(os.path.join(SAMPLES, name), "geojson", "kml", "gpkg", "zel")

    def test_shapes_of_all_kinds_everywhere(self):
        for seed in range(int(os.environ.get("GDAL_ROUNDS", "4"))):
            source = self.file(anything(random.Random(seed)))
            self.roundTrip(source, "geojson", "kml")
            self.roundTrip(source, "gpkg", options=["ABOUT=21.3,-157.8,0,45"])

    def test_countries(self):
        source = os.path.join(SAMPLES, "countries-110m.zel")
        back = self.convert(self.convert(source, "countries.gpkg"), "back.zel")
        self.assertEqual(sorted(self.blocks(back)), sorted(self.blocks(source)))
        self.assertEqual(len(self.blocks(back)), 286)


class Writing(Case):
    CIRCLE = "start\ncircle\ncenterlla 50 7 100\nradius 12.5\nrangeunits km\naltitudeunits m\n3d name A\nend\n"

    def edited(self, text, edit):
        """What becomes of a file when somebody edits its only feature in another program; its block and messages."""
        middle = self.convert(self.open(self.file(text), "LAYERS=ALL"), "middle.gpkg")
        dataset = gdal.OpenEx(middle, gdal.OF_VECTOR | gdal.OF_UPDATE)
        layer = dataset.GetLayer(0)
        feature = layer.GetNextFeature()
        edit(feature)
        layer.SetFeature(feature)
        del feature, layer, dataset
        with Messages() as texts:
            back = self.convert(middle, "edited.zel")
        return self.blocks(back)[0], texts

    def test_what_was_moved_stays_what_it_is(self):
        def move(by):
            def edit(feature):
                geometry = feature.GetGeometryRef().Clone()
                ring = geometry.GetGeometryRef(0)
                for i in range(ring.GetPointCount()):
                    ring.SetPoint(i, ring.GetX(i) + by[0], ring.GetY(i) + by[1], ring.GetZ(i) + by[2])
                feature.SetGeometry(geometry)
            return edit

        block, texts = self.edited(self.CIRCLE, move((1.5, -2, 10)))
        self.assertEqual(block[0], "circle")
        self.assertIn("radius 12.5", block)
        lat, lon, alt = map(float, next(line for line in block if line.startswith("centerlla")).split()[1:])
        self.assertAlmostEqual(lat, 48, delta=1e-6)
        self.assertAlmostEqual(lon, 8.5, delta=1e-6)
        self.assertAlmostEqual(alt, 110)
        self.assertIn('circle "A": its geometry was moved', texts[0])

        def over_the_earth(feature):
            target = self.file(self.CIRCLE.replace("50 7 100", "20 30 100"), "target.zel")
            dataset = self.open(target)
            other = dataset.GetLayer(0).GetNextFeature()
            feature.SetGeometry(other.GetGeometryRef())

        block, texts = self.edited(self.CIRCLE, over_the_earth)
        lat, lon, alt = map(float, next(line for line in block if line.startswith("centerlla")).split()[1:])
        self.assertAlmostEqual(lat, 20, delta=1e-6)
        self.assertAlmostEqual(lon, 30, delta=1e-6)

    def test_columns_that_make_no_shape_are_told(self):
        table = self.file("""kind,lat,lon,radius_m,sweep_deg,line_color,text
circle,,,500,,,
circle,1,2,1 nm,,,
orbit,1,2,500,,,
arc,1,2,500,0,,
cirle,1,2,500,,,Here
circle,1,2,500,,#f00x,
""", "in.csv")
        done = subprocess.run([ZEL, "convert", table, self.path("out.zel")], capture_output=True, text=True)
        for text in ('circle: it has no place', 'it has no geometry, it is left out', 'radius_m "1 nm" is no number',
                     'circle: it has no radius', 'orbit: it has no second centre', 'arc: it sweeps over no angle',
                     '"cirle" is no kind of shape', 'line_color "#f00x" is no colour'):
            self.assertIn(text, done.stderr)
        self.assertEqual([block[0] for block in self.blocks(self.path("out.zel"))],
                         ["points", "points", "points", "annotation Here", "circle"])

    def test_messages_do_not_steer_the_terminal(self):
        name = self.path("\x1b[31m\n\u202e")
        for words in [name, self.path("out.zel")], [self.file(self.CIRCLE), name + ".shp"], [self.file(self.CIRCLE), name]:
            done = subprocess.run([ZEL, "convert", *words], capture_output=True, text=True)
            self.assertIn("\\x1b[31m\\x0a\\u202e", done.stderr)
            self.assertNotRegex(done.stderr, "[\x1b\u202e]")
        with open("/dev/full", "w") as full:
            done = subprocess.run(
                [ZEL, "convert", self.file(self.CIRCLE), "-", "--to", "csv"], stdout=full, stderr=subprocess.PIPE, text=True
            )
        self.assertEqual((done.returncode, done.stderr), (2, "zel: the output could not be written\n"))

    def test_what_is_several_files_is_saved_as_a_whole(self):
        area = self.path("a_area.shx")
        subprocess.run([ZEL, "convert", self.file(self.CIRCLE), self.path("a.shp")], capture_output=True, check=True)
        with open(area, "rb") as file:
            before = file.read()
        os.remove(self.path("a_area.prj"))
        os.mkdir(self.path("a_area.prj"))
        done = subprocess.run([ZEL, "convert", self.file(self.CIRCLE * 3), self.path("a.shp")], capture_output=True, text=True)
        self.assertEqual(done.returncode, 2)
        self.assertIn("nothing is written", done.stderr)
        with open(area, "rb") as file:
            self.assertEqual(file.read(), before)
        self.assertEqual([name for name in os.listdir(self.directory) if ".new" in name], [])

    def test_what_was_reshaped_is_what_it_looks_like(self):
        def pull(feature):
            geometry = feature.GetGeometryRef().Clone()
            ring = geometry.GetGeometryRef(0)
            ring.SetPoint(5, ring.GetX(5) + 0.01, ring.GetY(5), ring.GetZ(5))
            feature.SetGeometry(geometry)

        def grow(feature):
            feature["radius_m"] = 20000

        for edit in (pull, grow):
            block, texts = self.edited(self.CIRCLE, edit)
            self.assertEqual(block[0], "polygon")
            self.assertIn("3d name A", block)
            self.assertIn("no longer the one of its columns", texts[0])

    def made(self, features, fields=("name", "text"), reference=4326, suffix="made.zel"):
        """The blocks and messages of features, each a text of its geometry, its fields and its style."""
        target = self.path(suffix)
        dataset = gdal.GetDriverByName("ZEL").Create(target, 0, 0, 0)
        srs = osr.SpatialReference()
        srs.ImportFromEPSG(reference)
        srs.SetAxisMappingStrategy(osr.OAMS_TRADITIONAL_GIS_ORDER)
        layer = dataset.CreateLayer("made", srs)
        for field in fields:
            layer.CreateField(ogr.FieldDefn(field))
        with Messages() as texts:
            for wkt, values, style in features:
                feature = ogr.Feature(layer.GetLayerDefn())
                if wkt:
                    feature.SetGeometry(ogr.CreateGeometryFromWkt(wkt))
                for name, value in values.items():
                    feature[name] = value
                feature.SetStyleString(style)
                layer.CreateFeature(feature)
            del feature, layer
            dataset = None
        return self.blocks(target), texts

    def test_geometries_of_other_programs(self):
        blocks, texts = self.made([
            ("POINT Z (10 50 7)", {"text": "a b"}, 'LABEL(c:#ff0000,s:20px)'),
            ("POINT (10 50)", {}, "SYMBOL(c:#0000ff80,s:9px)"),
            ("MULTIPOINT ((1 2),(3 4))", {"name": "many"}, ""),
            ("GEOMETRYCOLLECTION (LINESTRING (1 2,3 4),POLYGON ((0 0,9 0,9 9,0 0),(5 1,6 1,6 2,5 1)))", {},
             'PEN(c:#112233,w:4px,p:"2px 2px");BRUSH(fc:#44556677)'),
            ("CIRCULARSTRING (0 0,1 1,2 0)", {}, ""),
            ("POLYGON EMPTY", {"name": "nothing"}, ""),
            ("POINT (10 95)", {}, ""),
        ])
        self.assertEqual([block[0] for block in blocks],
                         ["annotation a b", "points", "points", "line", "polygon", "polygon", "line"])
        self.assertTrue({"lla 50 10 7", "linecolor hex 0xff0000ff", "fontsize 20", "altitudeunits m"} <= set(blocks[0]))
        self.assertTrue({"linecolor hex 0x80ff0000", "pointsize 9"} <= set(blocks[1]))
        self.assertTrue({"linecolor hex 0xff332211", "linewidth 4", "linestyle dotted"} <= set(blocks[3]))
        self.assertTrue({"filled", "fillcolor hex 0x77665544"} <= set(blocks[4]))
        self.assertNotIn("filled", blocks[5])
        self.assertGreater(len(blocks[6]), 20)
        self.assertEqual(len(texts), 3)

    def test_other_coordinates_are_turned_into_degrees(self):
        blocks, _ = self.made([("POINT (500000 5538630.7)", {"text": "x"}, "")], reference=32632)
        lat, lon = map(float, next(line for line in blocks[0] if line.startswith("lla")).split()[1:3])
        self.assertAlmostEqual(lat, 50, delta=1e-6)
        self.assertAlmostEqual(lon, 9, delta=1e-9)

    def test_a_table_of_places_and_sizes_makes_circles(self):
        blocks, _ = self.made([("POINT (7 50)", {"kind": "circle", "radius_m": "1500"}, "")], ("kind", "radius_m"))
        self.assertEqual(blocks[0][:3], ["circle", "centerlla 50 7 0", "radius 1500"])

    def test_files_appear_as_a_whole(self):
        old = self.file(self.CIRCLE, "made.zel")
        dataset = gdal.GetDriverByName("ZEL").Create(old, 0, 0, 0)
        layer = dataset.CreateLayer("x")
        self.assertFalse(layer.TestCapability(ogr.OLCRandomRead) or layer.TestCapability(ogr.OLCTransactions))
        for act in (layer.GetNextFeature, dataset.StartTransaction, lambda: layer.DeleteFeature(0),
                    lambda: gdal.GetDriverByName("ZEL").Create("/no/such/directory/x.zel", 0, 0, 0),
                    lambda: gdal.GetDriverByName("ZEL").Create(self.path("r.zel"), 1, 1, 1)):
            with self.assertRaises(RuntimeError):
                act()
        # GDAL itself deletes what is there; ours appears as a whole.
        self.assertFalse(os.path.exists(old))
        del layer, dataset
        self.assertEqual(self.blocks(old), [])
        self.made([("POINT (1 2)", {"name": "m"}, "")], suffix="made.zel")
        self.convert(self.path("made.zel"), "copy.zel")
        gdal.VectorTranslate("/vsimem/copy.zel", self.path("copy.zel"))
        copy = self.open("/vsimem/copy.zel")
        self.assertEqual(copy.GetLayer(0).GetFeatureCount(), 1)


class Convert(Case):
    """The zel command, for those who have no tools of GDAL's at hand."""

    def zel(self, *arguments, code=0, program=ZEL):
        done = subprocess.run([program, "convert", *arguments], capture_output=True, cwd=self.directory)
        self.assertEqual(done.returncode, code, done.stderr)
        return done.stdout.decode(), done.stderr.decode()

    def test_every_format_there_and_back(self):
        source = os.path.join(SAMPLES, "gallery.zel")
        for suffix in ("geojson", "kml", "kmz", "csv", "gpkg", "zel"):
            self.zel(source, f"g.{suffix}")
            self.zel(f"g.{suffix}", "back.zel")
            self.assertSameBlocks(self.blocks(source), self.blocks(self.path("back.zel")), suffix)
        # What the others cannot hold is told.
        self.assertIn("GPX holds no areas; 28 outlines became tracks", self.zel(source, "g.gpx", code=1)[1])
        self.zel("g.gpx", "back.zel")
        kinds = lambda file: sorted(b[0].replace("\\n", " ") for b in self.blocks(file) if b[0] not in ("points", "# kml groundoverlay"))
        self.assertEqual(kinds(self.path("back.zel")), kinds(source))
        self.zel(source, "g.shp")
        found = []
        for part in ("area", "line", "point", "points"):
            self.zel(f"g_{part}.shp", "back.zel")
            found += [block[0] for block in self.blocks(self.path("back.zel"))]
        self.assertEqual(sorted(found), sorted(block[0] for block in self.blocks(source)))

    def test_files_of_other_programs(self):
        kml = ("<kml xmlns='http://www.opengis.net/kml/2.2'><Document><Style id='s'><LineStyle><color>ff332211</color>"
               "<width>4</width></LineStyle></Style><Folder><name>F</name><Placemark><styleUrl>#s</styleUrl><LineString>"
               "<coordinates>1,2,3 4,5,6</coordinates></LineString></Placemark></Folder></Document></kml>")
        for name, text, expected in (
            ("a.kml", kml, ["line", "lla 2 1 3", "lla 5 4 6", "linewidth 4", "linecolor hex 0xff332211"]),
            ("a.csv", "kind,lat,lon,radius_m\ncircle,50,7,1500\n", ["circle", "centerlla 50 7 0", "radius 1500"]),
            ("a.gpx", "<gpx version='1.1' xmlns='http://www.topografix.com/GPX/1/1'><wpt lat='1' lon='2'><ele>3</ele>"
                      "<name>W</name></wpt></gpx>", ["annotation W", "lla 1 2 3"]),
        ):
            self.assertEqual(self.zel(self.file(text, name), "back.zel")[1], "", name)
            self.assertEqual(self.blocks(self.path("back.zel"))[0][:len(expected)], expected)

    def test_options_and_what_goes_wrong(self):
        file = self.file("start\ncircle\ncenterxy 1 2\nradius 9\nrangeunits km\nend\n")
        coarse = self.zel(file, "-", "--to", "geojson", "--tolerance", "100", "--about=-33,151")[0]
        self.assertIn('"tol_m": 100', coarse)
        self.assertLess(len(coarse), len(self.zel(file, "-", "--to", "geojson", "--about=-33,151")[0]))
        self.assertIn("no-such.kml", self.zel("no-such.kml", "x.zel", code=2)[1])
        self.assertIn("not one of the formats zel, geojson,", self.zel(file, "x.foo", code=2)[1])
        self.assertIn("has to be a ZEL file", self.zel(self.file("{}", "a.geojson"), "a.kml", code=2)[1]
                      if False else self.zel(self.file("a,WKT\n1,POINT (1 2)\n", "a.csv"), "a.kml", code=2)[1])
        self.assertIn("it does not exist", self.zel(file, "no/directory/x.kml", code=2)[1])
        alone = shutil.copy(ZEL, self.path("zel"))
        self.assertEqual(self.zel(file, "x.kml", code=2, program=alone)[1],
                         "zel: convert needs GDAL, and its driver for ZEL files: install the package gdal-driver-zel\n")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[3:])
