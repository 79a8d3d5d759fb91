#!/usr/bin/env python3
# SPDX-FileCopyrightText: The Serimonde developers
# SPDX-License-Identifier: MIT
"""Drives serimonde-cli by its commands: drive.py [OPTIONS OF serimonde-cli]; without any, its demo."""
import json
import subprocess
import sys


class Line:
    def __init__(self, *options):
        self.program = subprocess.Popen(["serimonde-cli", "--commands", *options], text=True,
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE)

    def do(self, step, what=None, **more):
        command = {"step": step, **({"what": what} if what else {}), **more}
        print(json.dumps(command), file=self.program.stdin, flush=True)
        for told in map(json.loads, self.program.stdout):
            if told["event"] == "answer":  # else something that happened meanwhile
                return told

    def end(self):
        self.program.stdin.close()
        return self.program.wait()


line = Line(*(sys.argv[1:] or ["--demo"]))
assert line.do("send", "Identification request")["ok"]
answer = line.do("expect", r"text:\r\n", within="3s")
print("answered after", answer["took"] / 1000, "ms" if answer["ok"] else answer["error"])
sys.exit(line.end())
