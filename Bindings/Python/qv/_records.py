"""What the library says of its classes."""

import json
from functools import lru_cache
from typing import Any

from ._library import call, library


def version() -> str:
    """The library's version, as "1.2.3"."""
    return library.qv_version().decode()


def find(name: str) -> str:
    """The class of that name, or the only one that is called so for short: find("mosaic") is "QVMosaicMTIFilter"."""
    return call(library.qv_class_find, name.encode()).decode()


@lru_cache(maxsize=None)
def _record(name: str) -> dict[str, Any]:
    return json.loads(call(library.qv_class_json, name.encode()))


def describe(name: str) -> dict[str, Any]:
    """Everything about a class: title, kind, category, help, inputs and properties with type, range, unit and default."""
    return json.loads(json.dumps(_record(find(name))))


def classes(kind: str | None = None, category: str | None = None) -> list[str]:
    """The names of all classes, or of those of a kind ("effect", "transition", "auxiliary") and a category."""
    names = [library.qv_class_name(i).decode() for i in range(library.qv_class_count())]
    return [name for name in names
            if kind in (None, _record(name)["kind"]) and category in (None, _record(name)["category"])]


def documentation(record: dict[str, Any]) -> str:
    """A class's title, what it does, and its properties with their ranges and defaults."""
    lines = [f"{record['name']}: {record['title']}", "", record["help"], ""]
    for entry in record["properties"]:
        if entry["driver"] == "none":
            continue
        bounds = "" if entry["min"] is None else f", {entry['min']:g} to {entry['max']:g}"
        choice = f", one of {', '.join(entry['variants'])}" if "variants" in entry else ""
        unit = f" {entry['unit']}" if entry["unit"] else ""
        lines.append(f"{entry['name']}: {entry['help']} ({entry['type']}{choice or bounds}{unit},"
                     f" default {json.dumps(entry['default'])})")
    return "\n".join(lines)
