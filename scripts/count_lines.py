#!/usr/bin/env python3
"""Counts the lines of code of the library and tool against those of the tests.

A line counts when it is neither blank nor a comment: // and # lines and the
lines of /* */ blocks are left out. Usage: scripts/count_lines.py [--by-suite]
from the top of the tree.
"""
import os
import sys

CODE_DIRS = ["platform", "utils", "riff", "imaging", "metadata", "zipcontainer",
             "fill", "fileinfo", "tools"]
CODE_EXT = {".cpp", ".h"}
TEST_EXT = {".cpp", ".h", ".py", ".sh"}


def count_file(path):
    hash_comments = path.endswith((".py", ".sh"))
    n = 0
    in_block = False
    with open(path, encoding="utf-8", errors="replace") as f:
        for raw in f:
            line = raw.strip()
            if in_block:
                end = line.find("*/")
                if end < 0:
                    continue
                in_block = False
                line = line[end + 2:].strip()
            if not line:
                continue
            if hash_comments:
                if line.startswith("#"):
                    continue
            else:
                if line.startswith("//"):
                    continue
                if line.startswith("/*"):
                    end = line.find("*/", 2)
                    if end < 0:
                        in_block = True
                        continue
                    if not line[end + 2:].strip():
                        continue
            n += 1
    return n


def count_tree(top, exts):
    total = 0
    for root, _, files in os.walk(top):
        for name in files:
            if os.path.splitext(name)[1] in exts:
                total += count_file(os.path.join(root, name))
    return total


def main():
    code = sum(count_tree(d, CODE_EXT) for d in CODE_DIRS if os.path.isdir(d))
    tests = count_tree("tests", TEST_EXT)
    if "--by-suite" in sys.argv:
        for d in sorted(os.listdir("tests")):
            p = os.path.join("tests", d)
            if os.path.isdir(p):
                print(f"  tests/{d:<14} {count_tree(p, TEST_EXT):6}")
    print(f"code  {code:6}")
    print(f"tests {tests:6}  ({100.0 * tests / code:.1f} % of code)")


if __name__ == "__main__":
    main()
