"""standstill.py BIN WORK [KIND...]: how long the sandbox's window stands still at most when the files of hostile.py that
it draws are opened by hand, when the view then moves, when the clock goes on, and when they are closed. Prints a line each: milliseconds by the clock, in
which other programs and the software renderer have their share, and of the processor for the window's thread. More than 100 ms
of that fails the run."""

import os
import pathlib
import subprocess
import sys

import hostile

MILLISECONDS = 100
SCRIPT = pathlib.Path(__file__).with_name("standstill.js")

failed = []
os.environ["HOME"] = str(hostile.WORK)
print(f"{'file':22} {'opened':>15} {'moved':>15} {'clock':>15} {'closed':>15}")
# Millions of places of platforms, and names of 10,000 letters, are beyond what is promised of the window.
BEYOND = ["zigzag.csv", "one-row-each.csv", "long-names.csv"]
for name in sys.argv[3:] or [kind for kind, (_, commands) in hostile.KINDS.items() if hostile.RENDER in commands and kind not in BEYOND]:
    file = hostile.make(name)
    command = [hostile.BIN / "halvis-sandbox", "--plugin", "none", "--settings", hostile.WORK / "settings.ini",
               "--size", "1280x800", "--script", SCRIPT, file]
    run = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, timeout=600)
    turns = [tuple(map(float, line.split()[1:])) for line in run.stdout.decode().splitlines() if line.startswith("turn ")]
    print(f"{name:22} " + " ".join(f"{clock:6.0f} ({processor:4.0f})" for clock, processor in turns), flush=True)
    if run.returncode != 0 or len(turns) != 4 or max(processor for _, processor in turns) > MILLISECONDS:
        failed.append(f"{name}: {run.stdout.decode()[-300:]}")
    file.unlink()
print("\n".join(failed))
sys.exit(1 if failed else 0)
