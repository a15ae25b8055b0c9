#!/usr/bin/env python3
"""layers.py LAYERS: the rules of the layers, on the includes of src, siblings and hosts.

LAYERS is the build's layers.tsv: each target with its folder, kind, sources and what it links. A folder is a layer:
- A file includes from its own folder and from the folders of what its target links, directly or not.
- A folder of src has one layer, and no two folders include each other.
- The units of the tree, a unit being the header and the source of one name, do not include each other in a circle.
"""
import os
import sys

from includes import includes, sources


def read_targets(path):
    targets = {}
    with open(path, encoding="utf-8") as rows:
        for row in rows:
            name, folder, kind, sources, links = row.rstrip("\n").split("\t")
            targets[name] = {"folder": folder, "kind": kind, "links": links.split(";"),
                             "sources": {os.path.join(folder, source) for source in sources.split(";")}}
    return targets


def linked(targets, name):
    found, todo = set(), [name]
    while todo:
        name = todo.pop()
        if name in targets and name not in found:
            found.add(name)
            todo += targets[name]["links"]
    return found


def folder_of(folders, path):
    """The layer's folder that `path` lies in; the tree's own one when no target has it."""
    while path and path not in folders:
        path = os.path.dirname(path)
    return path


def check_layers(targets, edges):
    folders = {target["folder"] for target in targets.values()}
    for folder in sorted(folders):
        layers = [name for name in targets
                  if targets[name]["folder"] == folder and targets[name]["kind"] == "STATIC_LIBRARY"]
        if folder.startswith("src/") and len(layers) != 1:
            yield f"{folder}/CMakeLists.txt:1: a folder of src has one layer, not {len(layers)}: {', '.join(layers)}"
    first = {}
    for path, number, text, file in edges:
        own, other = folder_of(folders, path), folder_of(folders, file)
        if own == other:
            continue
        here = [name for name in targets if targets[name]["folder"] == own]
        here = [name for name in here if path in targets[name]["sources"]] or here
        if not any(targets[name]["folder"] == other for by in here for name in linked(targets, by)):
            yield (f'{path}:{number}: includes "{text}": '
                   f"{' and '.join(here) or 'no target'} does not link {other or 'what has that file'}")
        first.setdefault((own, other), f"{path}:{number}")
    for own, other in first:
        if own < other and (other, own) in first:
            yield f"{first[own, other]}: {own} and {other} include each other (see {first[other, own]})"


def check_circles(edges):
    graph, place = {}, {}
    for path, number, _, file in edges:
        unit, other = os.path.splitext(path)[0], os.path.splitext(file)[0]
        if unit != other:
            graph.setdefault(unit, set()).add(other)
            place.setdefault((unit, other), f"{path}:{number}")
    reported = set()
    for start in sorted(graph):
        # The shortest way from a unit back to itself.
        ways, seen = [[start]], set()
        for way in ways:
            if start in graph.get(way[-1], ()):
                if frozenset(way) not in reported:
                    reported.add(frozenset(way))
                    steps = zip(way, way[1:] + [start])
                    yield (f"{place[way[0], (way + [start])[1]]}: units include each other in a circle: "
                           + ", ".join(f"{step[1]} at {place[step]}" for step in steps))
                break
            for unit in sorted(graph.get(way[-1], set()) - seen):
                seen.add(unit)
                ways.append(way + [unit])


def main(layers):
    edges = [(path, *include) for path in sources() for include in includes(path)]
    found = [*check_layers(read_targets(layers), edges), *check_circles(edges)]
    print("\n".join(found + [f"layers: {len(edges)} includes, {len(found)} findings"]))
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
