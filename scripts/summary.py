#!/usr/bin/env python3
"""Adds up the test reports (JUnit XML) below the given folders into one closing line."""

import pathlib
import sys
import xml.etree.ElementTree as ElementTree


def main(folders: list[str]) -> int:
    passed = failed = skipped = 0
    for folder in folders:
        for report in sorted(pathlib.Path(folder).glob("*.xml")):
            for case in ElementTree.parse(report).getroot().iter("testcase"):
                if case.find("failure") is not None or case.find("error") is not None:
                    failed += 1
                elif case.find("skipped") is not None or case.get("status") == "notrun":
                    skipped += 1
                else:
                    passed += 1
    tail = f", {skipped} skipped" if skipped else ""
    print(f"{passed} passed, {failed} failed{tail}")
    return 0 if passed and not failed else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
