"""locales.py BIN PLUGIN SAMPLES WORK: what the programs write and show is the same to the byte in every locale.

Locales that are not installed are made in WORK, which needs no rights, as far as the system has their definitions.
"""

import os
import pathlib
import shutil
import subprocess
import sys

BIN, PLUGIN, SAMPLES, WORK = (pathlib.Path(argument).resolve() for argument in sys.argv[1:5])
HERE = pathlib.Path(__file__).resolve().parent
LOCALES = ["C", "C.UTF-8", "de_DE.UTF-8", "fr_FR.UTF-8", "tr_TR.UTF-8"]

# Capital letters that Turkish makes others of, numbers of all kinds, places in letters, and lines with messages.
SHAPES = """VERSION 2
START
CIRCLE
CENTERLLA 21.25 -157.5 10.5
RADIUS 1234567.891
RANGEUNITS M
LINEWIDTH 2
3D NAME Insel I\u0131\u0130i
FILLED
FILLCOLOR hex 80ffffff
END
start
line
ll 21 30 15.5N 157 15 0W
tessellate true
lla 1e1 -1.5E+02 .5
linecolor blIsS
lla 1,5 2,5 3
end
start
annotation ISTANBUL I\\niii
lla 41.0082 28.9784 1000.5
end
start
ellipse
centerlla 0.1 0.2 0
majoraxis 12.5
minoraxis 7.25
rangeunits nm
rotate 12.5
end
start
circle
radius 1,5
centerlla 1 1
end
"""


def environment(home, locale, made):
    return dict(os.environ, HOME=str(home), LC_ALL=locale, LANG=locale, LANGUAGE="", LOCPATH=str(made), TZ="UTC")


def make(name, directory):
    """Whether the locale is there, in a directory of its own or in the system."""
    language, _, charset = name.partition(".")
    if name == "C" or shutil.which("localedef") is None:
        return name == "C"
    subprocess.run(["localedef", "-i", language, "-f", charset, directory / name], capture_output=True)
    point = subprocess.run([sys.executable, "-c", "import locale; locale.setlocale(locale.LC_ALL, ''); "
                            "print(locale.localeconv()['decimal_point'])"],
                           env=environment(WORK, name, directory), capture_output=True, text=True)
    return point.returncode == 0 and point.stdout.strip() == ("." if language == "C" else ",")


def outputs(locale, made):
    """All that comes out of the programs, by name."""
    home = WORK / "home"
    shutil.rmtree(home, ignore_errors=True)
    home.mkdir()
    (home / "shapes.zel").write_text(SHAPES)
    (home / "track.csv").write_text("time,name,lat,lon\n0,A,1.5,2.5\n60,A,1,75,2,5\n120,A,2.5,3.5\n")
    found = {}

    def run(name, *words):
        done = subprocess.run([str(word) for word in words], cwd=home, env=environment(home, locale, made),
                              capture_output=True, timeout=300)
        found[name] = b"%d\n%s\n%s" % (done.returncode, done.stdout, done.stderr)

    coast = SAMPLES / "coast-110m.zel"
    for verb in "check", "info", "format", "edit":
        run(f"zel {verb}", BIN / "zel", verb, "shapes.zel", coast)
    run("zel info --json", BIN / "zel", "info", "--json", "shapes.zel")
    for suffix in "geojson", "kml", "csv":
        run(f"zel convert to {suffix}", BIN / "zel", "convert", "shapes.zel", f"shapes.{suffix}")
    for suffix in "png", "svg":
        for view in "21.3,-157.6,3000000", "21.3,-157.6,900":
            name = f"{view[-5:]}.{suffix}"
            run(f"--render {name}", BIN / "halvis-sandbox", "--render", "shapes.zel", "track.csv", "-o", name, "--view", view,
                "--size", "400x300")
    run("the editor", BIN / "halvis-sandbox", "--settings", "settings.ini", "--plugin", PLUGIN, "--size", "1000x700",
        "--script", HERE / "locales.js", home)
    for file in home.iterdir():
        if file.suffix in (".png", ".svg", ".zel", ".geojson", ".kml", ".csv"):
            found[file.name] = file.read_bytes()
    return found


shutil.rmtree(WORK, ignore_errors=True)
made = WORK / "locales"
made.mkdir(parents=True)
there = [name for name in LOCALES if make(name, made)]
first = outputs(there[0], made)
failed = [f"{name}: {text.decode(errors='replace')}" for name, text in first.items()
          if name == "the editor" and text[:1] != b"0" or name.startswith("--render") and text[:1] not in b"01"]
for locale in there[1:]:
    other = outputs(locale, made)
    for name in sorted(first.keys() | other.keys()):
        if first.get(name) != other.get(name):
            failed.append(f"{locale}: {name} is another")
            (WORK / f"{locale} {name}".replace("/", " ")).write_bytes(other.get(name, b""))
            (WORK / f"{there[0]} {name}".replace("/", " ")).write_bytes(first.get(name, b""))
print(f"{len(first)} outputs under {', '.join(there)}")
print("\n".join(failed))
# Without another decimal point nothing is tried.
sys.exit(1 if failed else 0 if len(there) > 2 else 77)
