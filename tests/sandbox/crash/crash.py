"""crash.py SANDBOX PLUGIN DIRECTORY ROUNDS: a session ends without a word at a random moment; the next one recovers it.

The program is killed, terminated, or loses its X server. What was there a second before stands in a file or is recovered, and an orderly end of the next session leaves no journal and no temporary file.
"""

import os
import pathlib
import random
import re
import signal
import subprocess
import sys
import tempfile
import time

sandbox, plugin, scripts, rounds = sys.argv[1:]
chance = random.Random(int(os.environ.get("SEED", "1")))


def display():
    read, write = os.pipe()
    server = subprocess.Popen(["Xvfb", "-displayfd", str(write), "-screen", "0", "1920x1200x24", "-nolisten", "tcp",
                               "-noreset", "+extension", "GLX"], pass_fds=[write], stderr=subprocess.DEVNULL)
    os.close(write)
    with os.fdopen(read) as number:
        return server, ":" + number.readline().strip()


def start(home, number, script):
    environment = dict(os.environ, HOME=str(home), DISPLAY=number, QT_QPA_PLATFORM="xcb", LIBGL_ALWAYS_SOFTWARE="1",
                       XDG_CACHE_HOME=str(pathlib.Path.home() / ".cache"))
    environment.pop("WAYLAND_DISPLAY", None)
    return subprocess.Popen([sandbox, "--settings", home / "settings.ini", "--plugin", plugin, "--size", "1000x700",
                             "--script", f"{scripts}/{script}.js", home], env=environment, stdout=subprocess.PIPE,
                            stderr=subprocess.STDOUT, text=True)


def noted(home, before):
    """The names that were there at a time (seconds)."""
    best = (0, [])
    for note in (home / "notes").iterdir():
        lines = note.read_text().split("\n")
        if lines[0].isdigit() and int(lines[0]) / 1000 < before:
            best = max(best, (int(lines[0]), lines[1:]))
    return best[1]


recovered_some = 0
for count in range(int(rounds)):
    with tempfile.TemporaryDirectory() as work:
        home = pathlib.Path(work)
        (home / "notes").mkdir()
        server, number = display()
        session = start(home, number, "session")
        while not (home / "notes" / "0").exists() and session.poll() is None:
            time.sleep(0.05)
        time.sleep(chance.uniform(0.5, 6))
        how = ("killed", "terminated", "without its X server")[count % 3]
        ended = time.time()
        if how == "without its X server":
            server.kill()
        else:
            session.send_signal(signal.SIGKILL if how == "killed" else signal.SIGTERM)
        output = session.communicate(timeout=60)[0]
        server.kill()
        server.wait()
        if "FAILED" in output and how == "killed":
            sys.exit(f"round {count}: {output}")

        # A host that is asked to end may do so in good order: then there is a rescue file.
        names = set()
        for file in home.rglob("*.zel"):
            names |= set(re.findall(r"N-\d+-", file.read_text()))
        server, number = display()
        after = start(home, number, "recover")
        output = after.communicate(timeout=120)[0]
        server.kill()
        server.wait()
        if after.returncode != 0:
            sys.exit(f"round {count}, {how}: {output}")
        found = set(re.findall(r"recovered (N-\d+-)", output))
        recovered_some += bool(found)
        lost = [name for name in noted(home, ended - 1) if name not in names | found]
        left = [path for path in home.rglob(".overlayeditor-*")]
        if lost or left:
            sys.exit(f"round {count}, {how}: lost {lost}, left {left}\n{output}")
if recovered_some == 0:
    sys.exit("nothing was ever recovered")
print(f"{rounds} sessions ended without a word, {recovered_some} of them with unsaved shapes; nothing is lost")
