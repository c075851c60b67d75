#!/usr/bin/env python3
"""The reference for the conversion benchmark: a straightforward csv + json program that
reads a comma-separated file and writes the same MGJSON structure the library writes
(one group per column, one static node per cell, match names data0, data1, ...)."""
import csv
import json
import sys


def is_number(cell):
    try:
        value = float(cell)
    except ValueError:
        return False
    return value == value and value not in (float("inf"), float("-inf"))


def convert(source, target):
    with open(source, newline="", encoding="utf-8") as f:
        rows = list(csv.reader(f))
    header = rows[0]
    names = []
    for name in header:
        if not name:
            break
        names.append(name)
    data = [row + [""] * (len(names) - len(row)) for row in rows[1:] if row]
    counter = 0
    outline = []
    for c, name in enumerate(names):
        numeric = all(is_number(row[c]) for row in data if row[c])
        group = {"objectType": "dataGroup", "matchName": "data%d" % counter, "displayName": name, "children": []}
        counter += 1
        for r, row in enumerate(data):
            cell = row[c]
            node = {"objectType": "dataStatic", "matchName": "data%d" % counter, "displayName": "%s %d" % (name, r)}
            counter += 1
            if numeric:
                value = float(cell) if cell else 0.0
                node["dataType"] = {"type": "number", "numberStringProperties": {
                    "pattern": {"isSigned": value < 0, "digitsInteger": 1, "digitsDecimal": 0},
                    "range": {"occurring": {"min": value, "max": value}, "legal": {"min": value, "max": value}}}}
                node["value"] = value
            else:
                node["dataType"] = {"type": "string", "paddedStringProperties": {
                    "maxLen": len(cell), "maxDigitsInStrLength": len(str(len(cell))), "eventMarkerB": False}}
                node["value"] = cell
            group["children"].append(node)
        outline.append(group)
    document = {"version": "mgjson2.0.0", "dynamicSamplesPresentB": False, "creator": "reference",
                "dataOutline": outline}
    with open(target, "w", encoding="utf-8") as f:
        json.dump(document, f, separators=(",", ":"))


if __name__ == "__main__":
    convert(sys.argv[1], sys.argv[2])
