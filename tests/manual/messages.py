"""messages.py ROOT: every message that the editor's sources may give stands in the manual's chapter of messages."""

import pathlib
import re
import sys

root = pathlib.Path(sys.argv[1])
STATEMENT = re.compile(r"(?:halNotify::notify|PICommon::Notify|PICommon::debugPrint)\(.*?;", re.DOTALL)
LITERAL = re.compile(r'"((?:[^"\\]|\\.)*)"')


def messages(source):
    """The literal parts of each message, joined where only the layout of the source parts them."""
    for statement in STATEMENT.findall(source):
        for literal in LITERAL.findall(re.sub(r'"\s+"', "", statement)):
            yield literal.replace('\\"', '"').replace("\\n", "")


chapter = (root / "docs/manual/messages.md").read_text(encoding="utf-8")
chapter = re.sub(r"\s+", " ", chapter.replace("*", ""))
found = 0
missing = []
for room in ("gui", "tools", "model", "plugin"):
    for path in sorted((root / room).glob("*.cpp")):
        for text in messages(path.read_text(encoding="utf-8")):
            text = text.strip(' ":;,.')
            if " " not in text:
                continue
            found += 1
            if text not in chapter:
                missing.append(f"{path.relative_to(root)}: {text}")

if found < 40:
    missing.append(f"only {found} messages were found in the sources")
print("\n".join(missing) if missing else f"{found} messages, all in the manual")
sys.exit(1 if missing else 0)
