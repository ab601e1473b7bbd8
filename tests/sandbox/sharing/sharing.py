"""sharing.py HEADLESS SANDBOX PLUGIN SCRIPT ROUNDS: two editors and a third program on the same five files.

The third program is this one: it writes, deletes and renames. At the end every name that was typed stands in a file, a
copy or a rescue file, unless its shape was deleted on purpose, or stood in a text that the third program has replaced;
and a message told of each copy and each rescue file.
"""

import ctypes
import os
import pathlib
import random
import re
import subprocess
import sys
import tempfile
import time

headless, sandbox, plugin, script, rounds = sys.argv[1:]
libc = ctypes.CDLL(None, use_errno=True)
AT_FDCWD, NOREPLACE, EXCHANGE = -100, 1, 2
NAME = re.compile(r"\b[ABX]-\d+-")
files = ["abcde"[i] + ".zel" for i in range(5)]
chance = random.Random(int(os.environ.get("SEED", "1")))


def rename(old, new, how):
    return libc.renameat2(AT_FDCWD, os.fsencode(old), AT_FDCWD, os.fsencode(new), how) == 0


def third(work, private, count, written, destroyed, moved):
    """One thing that somebody else does; what it destroys it notes, as its own fault."""
    path = work / chance.choice(files)
    mine = private / "mine"
    if chance.random() < 0.5:
        name = f"X-{count}-"
        mine.write_text(f"start\ncircle\ncenterll {chance.randrange(80)} 5\nradius 3\n3d name {name}\nend\n")
        written.add(name)
        if not rename(mine, path, EXCHANGE):
            rename(mine, path, NOREPLACE)
    elif chance.random() < 0.3:
        rename(path, mine, NOREPLACE)
    else:
        rename(path, work / chance.choice(files), NOREPLACE)
    if mine.exists():
        destroyed.update(NAME.findall(mine.read_text()))
        mine.unlink()
    # There are names for a hundred copies, of rescue files the newest are kept, and nobody would leave so many.
    for kept in [*work.glob("*~*"), *work.parent.glob("?/.config/**/Unsaved *.zel")]:
        if rename(kept, private / f"{count}-{kept.name}", NOREPLACE) and "~" not in kept.name:
            moved.append(kept)


with tempfile.TemporaryDirectory() as directory:
    base = pathlib.Path(directory)
    work, private = base / "work", base / "private"
    work.mkdir()
    private.mkdir()
    for name in files:
        (work / name).write_text(f"start\ncircle\ncenterll 1 2\nradius 3\n3d name {name}\nend\n")
    editors = []
    for user in "AB":
        home = base / user
        home.mkdir()
        environment = {**os.environ, "HOME": str(home), "SHARED": str(work), "USER_NAME": user, "ROUNDS": rounds,
                       "SEED": str(chance.randrange(1 << 20)), "TMPDIR": str(base)}
        command = [headless, sandbox, "--settings", str(home / "settings.ini"), "--plugin", plugin, "--size", "700x500",
                   "--script", script]
        output = open(base / (user + ".log"), "w+", encoding="utf-8")
        editors.append((subprocess.Popen(command, env=environment, stdout=output, stderr=subprocess.STDOUT), output))
    written, destroyed, moved, count = set(), set(), [], 0
    while any(editor.poll() is None for editor, _ in editors):
        count += 1
        third(work, private, count, written, destroyed, moved)
        time.sleep(0.1)
    logs = []
    for editor, output in editors:
        output.seek(0)
        logs.append(output.read())
        if editor.returncode != 0:
            sys.exit(logs[-1][-4000:])
    text = "\n".join(logs)
    typed = written | set(re.findall(r"TYPED (\S+)", text))
    deleted = set(re.findall(r"DELETED (\S+)", text))
    rescued = [path for user in "AB" for path in (base / user).rglob("Unsaved *.zel")]
    kept = [*work.iterdir(), *private.iterdir(), *rescued]
    placed = set(NAME.findall("\n".join(path.read_text() for path in kept)))
    copies = [path for path in [*work.iterdir(), *private.iterdir()] if "~" in path.name]
    told = {pathlib.Path(path).name for path in re.findall(r"TOLD The old \S+ is kept as (\S+): ", text)}
    faults = [f"{name} has no place" for name in sorted(typed - placed - deleted - destroyed)]
    faults += [f"nobody told of {path}" for path in copies if path.name.split("-", 1)[-1] not in told]
    faults += [f"nobody told of {path}" for path in rescued + moved if f"are kept in {path}" not in text]
    print(f"{len(typed)} names typed or written, of which {len(typed - deleted - destroyed)} must be there and "
          f"{len(typed & placed)} are; {count} deeds of the third program, {len(copies)} copies, {len(rescued + moved)} rescue files, "
          f"{text.count('MISSED')} missed, {text.count('TOLD Not saved')} not saved")
    if not typed or not copies:
        faults.append("nothing happened")
    if faults:
        pathlib.Path(os.environ.get("FAULTS", os.devnull)).write_text(text)
    sys.exit("\n".join(faults) or None)
