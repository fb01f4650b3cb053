#!/usr/bin/env python3
"""Fails when a program no longer says what a transcript shows.

A transcript is a text of commands, each behind "$ ", and what they print, as a terminal shows it. The commands of a
transcript run one after the other in one shell, so that "$ echo $?" shows how the one before it ended.

    scripts/check_transcripts.py --in FOLDER TRANSCRIPT…             runs the commands in that folder
    scripts/check_transcripts.py --in FOLDER --write TRANSCRIPT…     puts the output into the transcripts
"""

import argparse
import difflib
import shlex
import subprocess
import sys
from pathlib import Path


def commands(text):
    return [line[2:] for line in text.splitlines() if line.startswith("$ ")]


def replayed(text, folder):
    """Gives the transcript with what its commands print now."""
    script = "status=0\n"
    for command in commands(text):
        script += f"printf '%s\\n' {shlex.quote('$ ' + command)}\n(exit $status)\n{command}\nstatus=$?\n"
    shell = subprocess.run(["sh", "-s"], input=script, cwd=folder, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                           check=False, timeout=60, encoding="utf-8")
    return shell.stdout


def main(arguments):
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--in", dest="folder", type=Path, default=Path("."), help="the folder to run the commands in")
    parser.add_argument("--write", action="store_true", help="puts the output into the transcripts")
    parser.add_argument("transcripts", nargs="+", type=Path)
    options = parser.parse_args(arguments)
    status = 0
    for place in options.transcripts:
        text = place.read_text(encoding="utf-8")
        if not commands(text):
            parser.error(f"{place} has no command")
        now = replayed(text, options.folder)
        if now == text:
            continue
        if options.write:
            place.write_text(now, encoding="utf-8")
            continue
        status = 1
        sys.stderr.writelines(difflib.unified_diff(text.splitlines(True), now.splitlines(True), str(place), "now"))
    return status


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
