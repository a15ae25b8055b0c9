"""The product's sources, and which file of the tree an #include names."""
import os
import re

ROOT = os.path.realpath(os.path.join(os.path.dirname(__file__), ".."))
PRODUCT = ("src/", "siblings/", "hosts/")
_INCLUDE = re.compile(r'\s*#\s*include\s+"([^"]+)"')
_known = {}


def sources():
    """The product's sources and headers, as paths below ROOT."""
    for place in PRODUCT:
        for folder, _, names in sorted(os.walk(os.path.join(ROOT, place))):
            for name in sorted(names):
                if name.endswith((".h", ".cpp")):
                    yield os.path.relpath(os.path.join(folder, name), ROOT)


def includes(path):
    """The tree's own files that `path` (below ROOT) includes: (line number, text of the include, path)."""
    if path not in _known:
        _known[path] = list(_read(path))
    return _known[path]


def _read(path):
    # The compiler's order: beside the file, from src, from the top of the tree.
    places = (os.path.dirname(path), "src", "")
    with open(os.path.join(ROOT, path), encoding="utf-8") as source:
        for number, line in enumerate(source, 1):
            match = _INCLUDE.match(line)
            for place in places if match else ():
                file = os.path.normpath(os.path.join(place, match[1]))
                if os.path.isfile(os.path.join(ROOT, file)):
                    yield number, match[1], file
                    break


def closure(path):
    """`path` and every file of the tree that it includes, directly or not."""
    found, todo = {path}, [path]
    while todo:
        for _, _, file in includes(todo.pop()):
            if file not in found:
                found.add(file)
                todo.append(file)
    return found
