"""hostile.py BIN WORK [KIND...]: files that nobody should write, given to the programs that read them, one after the
other. Prints a line each: time and peak memory. A limit that is passed fails the run."""

import gzip
import math
import os
import pathlib
import random
import resource
import struct
import subprocess
import sys
import time
import zlib

BIN, WORK = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
SECONDS = 5.0
MEBIBYTES = 512
random.seed(27)


def block(*lines):
    return "start\n" + "\n".join(lines) + "\nend\n"


def place():
    return f"{random.uniform(-85, 85):.6f} {random.uniform(-180, 180):.6f} 0"


def repeated(text, size):
    return text * (size // len(text))


def star(points, step):
    corners = [i * step % points for i in range(points)]
    return [f"lla {20 * math.cos(math.tau * c / points):.9f} {20 * math.sin(math.tau * c / points):.9f} 0" for c in corners]


def points(keyword, count, filled=False):
    return block(keyword, *(["filled true"] if filled else []), *("lla " + place() for _ in range(count)))


def area():
    """A filled house of a tenth of a degree."""
    lat, lon = random.uniform(-80, 80), random.uniform(-179, 178)
    return block("polygon", "filled true", *(f"lla {lat + x:.4f} {lon + y:.4f} 0" for x, y in ((0, 0), (0, 0.1), (0.1, 0.15), (0.2, 0.1), (0.2, 0))))


def png(width, height, kind=0, row=None):
    """A picture of one colour, a few bytes for each row; or of rows that begin with their filter."""
    def chunk(name, data):
        return struct.pack(">I", len(data)) + name + data + struct.pack(">I", zlib.crc32(name + data))
    packer = zlib.compressobj(9 if row is None else 1)
    rows = b"".join(packer.compress(bytes(1 + width) if row is None else row(y)) for y in range(height)) + packer.flush()
    head = struct.pack(">IIBBBBB", width, height, 8, kind, 0, 0, 0)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", head) + chunk(b"IDAT", rows) + chunk(b"IEND", b"")


def noisy_png(width, height):
    """Of colours, like a photograph's: half of each number is noise."""
    noise = bytes(i & 0x8f for i in random.randbytes(1 << 16)) * (1 + 3 * width // (1 << 16))
    noise += noise[:1 << 16]
    return png(width, height, 2, lambda y: b"\1" + noise[y * 7919 % (1 << 16):][:3 * width])


def noisy_jpeg(width, height, progressive=False):
    """Of grey noise: any bits mean something."""
    def segment(mark, data):
        return struct.pack(">BBH", 0xff, mark, 2 + len(data)) + data
    def scan(first, last):
        bits = random.randbytes(width * height // 8).replace(b"\xff", b"\xfe")
        return segment(0xda, bytes([1, 1, 0, first, last, 0])) + bits
    # Seven differences of the mean, then fourteen pairs of zeros and a number, and the end.
    tables = segment(0xdb, bytes([0] + [16] * 64))
    tables += segment(0xc4, bytes([0x00, 0, 0, 7] + [0] * 13 + list(range(7))))
    tables += segment(0xc4, bytes([0x10, 0, 0, 0, 15] + [0] * 12 + [0x00, *(16 * zeros + number for zeros in range(7) for number in (1, 3))]))
    head = segment(0xc2 if progressive else 0xc0, struct.pack(">BHHBBBB", 8, height, width, 1, 1, 0x11, 0))
    scans = scan(0, 0) + scan(1, 5) + scan(6, 63) if progressive else scan(0, 63)
    return b"\xff\xd8" + tables + head + scans + b"\xff\xd9"


def with_bombs(picture):
    """Before its pixels: texts of 4 GB, packed."""
    text = b"Comment\0\0" + zlib.compress(bytes(8 << 20), 9)
    chunk = struct.pack(">I", len(text)) + b"zTXt" + text + struct.pack(">I", zlib.crc32(b"zTXt" + text))
    return picture[:33] + 500 * chunk + picture[33:]


def svg(circles, size):
    boxes = "".join(f'<circle cx="{i % 1000}" cy="{i // 1000}" r="400" opacity="0.01"/>' for i in range(circles))
    return f'<svg xmlns="http://www.w3.org/2000/svg" width="{size}" height="{size}">{boxes}</svg>'.encode()


def picture(name, data):
    (WORK / name).write_bytes(data)
    return block("# kml_groundoverlay", f"# kml_icon {name}", "# kml_latlonbox 40 -30 60 -40 0")


def icons(count):
    for i in range(count):
        (WORK / f"icon{i}.png").write_bytes(noisy_png(100 + i, 200))
        yield f"icon{i}.png"


MB = 1 << 20
RENDER = ["halvis-sandbox", "--render", "{}", "-o", "out.png", "--size", "400x300"]
PRINT = ["halvis-sandbox", "--render", "{}", "-o", "out.svg"]
CHECK = ["zel", "check", "{}"]
FORMAT = ["zel", "format", "{}"]
EDIT = ["zel", "edit", "{}"]
INFO = ["zel", "info", "--json", "{}"]
circle = block("circle", "centerlla 10 20 0", "radius 500")


def tracks(platforms, rows):
    """Platforms that go to and fro about a degree of the earth each."""
    def track(platform):
        lat, lon = platform % 160 - 80, platform % 359 - 179
        return "".join(f"{60 * i},P{platform},{lat + i * 7919 % 1000 / 1000:.5f},{lon + i * 6101 % 1000 / 1000:.5f},0\n" for i in range(rows))
    return "time,name,lat,lon,alt\n" + "".join(track(platform) for platform in range(platforms))


def leaps(platforms, rows, lats, lons):
    """Platforms that are somewhere else in each row."""
    return "time,name,lat,lon\n" + "".join(f"{row},P{platform},{random.uniform(*lats):.6f},{random.uniform(*lons):.6f}\n"
                                           for row in range(rows) for platform in range(platforms))


# name: (what is in the file, the commands that read it)
KINDS = {
    "circles": (lambda: repeated(circle, 100 * MB), [CHECK, FORMAT, EDIT, INFO]),
    "one-line-of-points": (lambda: block("line", repeated("lla 10.123456 20.123456 0\n", 100 * MB)), [CHECK, FORMAT]),
    "no-line-end": (lambda: "a" * 100 * MB, [CHECK, RENDER]),
    "nulls": (lambda: "\0" * 50 * MB, [CHECK, RENDER]),
    "nulls-in-lines": (lambda: repeated("\0\0\0\n", 20 * MB), [CHECK, RENDER]),
    "nonsense-lines": (lambda: repeated("what is this\n", 24 * MB), [CHECK, RENDER]),
    "nonsense-in-blocks": (lambda: repeated("start\ncircle\nradius x\nradius y\nend\n", 24 * MB), [CHECK, EDIT]),
    "unterminated": (lambda: "start\nline\n" + repeated("lla 1 2 3\n", 50 * MB), [CHECK]),
    "starts-only": (lambda: repeated("start\n", 24 * MB), [CHECK]),
    "carriage-returns": (lambda: circle.replace("\n", "\r") * 100000, [CHECK]),
    "long-numbers": (lambda: block("line", *("lla " + "1" * 100000 + " 2 3" for _ in range(500))), [CHECK]),
    "blanks": (lambda: repeated(" \t" * 5000 + "\n", 100 * MB), [CHECK]),
    "not-text": (lambda: random.randbytes(20 * MB), [CHECK, RENDER]),
    "comments": (lambda: repeated("# nothing at all\n", 100 * MB), [CHECK, FORMAT]),
    "empty-blocks": (lambda: repeated("start\nend\n", 24 * MB), [CHECK]),
    "filled-star-801": (lambda: block("polygon", "filled true", *star(801, 400)), [RENDER]),
    "filled-star-10001": (lambda: block("polygon", "filled true", *star(10001, 5000)), [RENDER]),
    "many-filled-stars": (lambda: block("polygon", "filled true", *star(41, 20)) * 1000, [RENDER]),
    "ten-thousand-stars": (lambda: block("polygon", "filled true", *star(41, 20)) * 10000, [RENDER]),
    "filled-scrawl": (lambda: points("polygon", 100000, True), [RENDER]),
    "huge-radius": (lambda: block("circle", "filled true", "rangeunits m", "centerlla 1 2 0", "radius 1e9"), [RENDER]),
    "huge-radii": (lambda: block("ellipse", "filled true", "rangeunits m", "centerlla 1 2 0", "majoraxis 1e300", "minoraxis 1e9"), [RENDER]),
    "circles-shown": (lambda: "".join(block("circle", f"centerlla {place()}", "radius 50", "filled true") for _ in range(20000)), [RENDER]),
    "large-areas": (lambda: "".join(block("circle", "rangeunits m", f"centerlla {place()}", f"radius {3e6 + i}", "filled true", "fillcolor hex 400000ff") for i in range(500)), [RENDER]),
    "large-bodies": (lambda: "".join(block("sphere", "rangeunits m", f"centerlla {place()}", "radius 3e5", "filled true") for _ in range(1000)), [RENDER]),
    "wide-lines": (lambda: "".join((block("sphere", "rangeunits m", f"centerlla {place()}", "radius 1e5", "filled true") if i % 16 == 0 else "")
                                   + block("line", "linewidth 255", "linecolor hex 400000ff", "lla " + place(), "lla " + place()) for i in range(1000)), [RENDER]),
    "random-segments": (lambda: points("linesegs", 200000), [RENDER]),
    "segments-printed": (lambda: block("linesegs", *(f"lla {random.uniform(10, 11):.6f} {random.uniform(20, 21):.6f} 0" for _ in range(10**6))), [PRINT]),
    "lines-printed": (lambda: "".join(block("line", f"lla {random.uniform(10, 11):.6f} {random.uniform(20, 21):.6f} 0", f"lla {random.uniform(10, 11):.6f} {random.uniform(20, 21):.6f} 0") for _ in range(800000)), [PRINT]),
    "areas": (lambda: "".join(area() for _ in range(500000)), [RENDER, PRINT]),
    "tall-labels": (lambda: "".join(block("annotation " + "a\\n" * 5000, f"lla {place()}") for _ in range(100)), [RENDER]),
    "large-labels": (lambda: "".join(block("annotation Large", "fontsize 100000", f"lla {place()}") for _ in range(100)), [RENDER]),
    "large-picture": (lambda: picture("large.png", png(30000, 30000)), [RENDER]),
    "picture-png": (lambda: picture("noisy.png", noisy_png(5000, 5000)), [RENDER]),
    "picture-jpeg": (lambda: picture("noisy.jpeg", noisy_jpeg(5000, 5000)), [RENDER]),
    "picture-jpeg-in-scans": (lambda: picture("scans.jpeg", noisy_jpeg(5000, 5000, True)), [RENDER]),
    "picture-with-bombs": (lambda: picture("bombs.png", with_bombs(noisy_png(500, 500))), [RENDER]),
    "largest-picture": (lambda: picture("largest.jpeg", noisy_jpeg(8000, 8000)), [RENDER]),
    "drawing": (lambda: picture("drawing.svg", svg(12000, 2000)), [RENDER]),
    "icons": (lambda: "".join(block("annotation Here", f"# kml_icon {name}", f"lla {place()}") for name in icons(400)), [RENDER]),
    "tracks.csv": (lambda: tracks(3200, 1000), [RENDER]),
    "platforms.csv": (lambda: tracks(50000, 3), [RENDER]),
    "leaps.csv": (lambda: leaps(1000, 1000, (-90, 90), (-180, 180)), [RENDER, PRINT]),
    "far-side.csv": (lambda: leaps(1000, 1000, (-80, 80), (179.8, 180.2)), [RENDER]),
    "zigzag.csv": (lambda: leaps(1, 3300000, (20, 21), (30, 31)), [RENDER]),
    "one-row-each.csv": (lambda: leaps(1200000, 1, (-80, 80), (-180, 180)), [RENDER]),
    "long-names.csv": (lambda: "time,name,lat,lon\n" + "".join(f"0,{i}{'x' * 9970},{random.uniform(-80, 80):.4f},{random.uniform(-180, 180):.4f}\n" for i in range(7000)), [RENDER]),
    "slow-picture": (lambda: picture("slow.svgz", gzip.compress(svg(100000, 3000))), [RENDER]),
}


def run(command, file):
    started = time.monotonic()
    words = [str(BIN / command[0])] + [word.format(file) for word in command[1:]]
    process = subprocess.Popen(words, cwd=WORK, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    timer = time.monotonic() + 30 * SECONDS
    while True:
        pid, status, usage = os.wait4(process.pid, os.WNOHANG)
        if pid:
            break
        if time.monotonic() > timer:
            process.kill()
            _, status, usage = os.wait4(process.pid, 0)
            break
        time.sleep(0.005)
    process.returncode = os.waitstatus_to_exitcode(status)
    return time.monotonic() - started, usage.ru_maxrss / 1024, process.returncode, usage.ru_utime + usage.ru_stime


def make(name):
    file = WORK / (name if name.endswith(".csv") else name + ".zel")
    # In a process of its own: what this one has held once would count as memory of all that it starts.
    maker = os.fork()
    if maker == 0:
        contents = KINDS[name][0]()
        file.write_bytes(contents if isinstance(contents, bytes) else contents.encode())
        os._exit(0)
    os.waitpid(maker, 0)
    return file


def main():
    failed = []
    print(f"{'file':22} {'MB':>6} {'command':10} {'s':>7} {'cpu s':>7} {'MiB':>7} status")
    for name in sys.argv[3:] or list(KINDS):
        file = make(name)
        megabytes = file.stat().st_size / MB
        for command in KINDS[name][1]:
            seconds, memory, status, cpu = run(command, file)
            verb = command[1].lstrip("-")
            print(f"{name:22} {megabytes:6.1f} {verb:10} {seconds:7.2f} {cpu:7.2f} {memory:7.0f} {status}", flush=True)
            if cpu > SECONDS or memory > MEBIBYTES or status not in (0, 1, 2):
                failed.append(f"{name}, {verb}: {cpu:.1f} s, {memory:.0f} MiB, status {status}")
        file.unlink()
    print("\n".join(failed))
    sys.exit(1 if failed else 0)


WORK.mkdir(parents=True, exist_ok=True)
if __name__ == "__main__":
    main()
