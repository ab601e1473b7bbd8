"""licences.py ROOT: REUSE.toml gives every file a licence, names only files and licences that are there, and no
licence text is left over."""

import fnmatch
import pathlib
import sys
import tomllib

root = pathlib.Path(sys.argv[1])
annotations = tomllib.loads((root / "REUSE.toml").read_text(encoding="utf-8"))["annotations"]
texts = {path.stem for path in (root / "LICENSES").iterdir()}
files = [path.relative_to(root).as_posix() for path in root.rglob("*")
         if path.is_file() and path.relative_to(root).parts[0] not in (".git", "build", "out")]
faults, covered, named = [], set(), set()
for annotation in annotations:
    patterns = annotation["path"] if isinstance(annotation["path"], list) else [annotation["path"]]
    named.add(annotation["SPDX-License-Identifier"])
    for pattern in patterns:
        matching = fnmatch.filter(files, pattern)
        covered.update(matching)
        if not matching:
            faults.append(f"REUSE.toml: no file is {pattern}")
faults += [f"{file}: no licence in REUSE.toml" for file in files if file not in covered]
faults += [f"LICENSES: {name} is {'not there' if name in named else 'not used'}" for name in sorted(named ^ texts)]
print("\n".join(faults))
sys.exit(bool(faults))
