"""Says which tokens of a list a TextMate grammar takes for something else: textmate_tokens.py GRAMMAR TOKENS. A line
of the list is a path, a line, a column in bytes and a kind. Reads what our grammar uses: `match` with `captures`,
`begin` and `end`, `include`."""

import json
import re
import sys
from pathlib import Path

kinds = [("comment", "comment"), ("string", "string"), ("constant.character.escape", "string"),
         ("constant.numeric", "number"), ("constant.language", "boolean"), ("keyword.operator.word", "keyword"),
         ("keyword.operator", "sign"), ("keyword", "keyword"), ("storage", "keyword"), ("entity", "word"),
         ("variable", "word"), ("", "other")]


def kind_of(scope):
    return next(kind for prefix, kind in kinds if scope.startswith(prefix))


class Grammar:
    def __init__(self, path):
        self.grammar = json.loads(Path(path).read_text(encoding="utf-8"))
        self.top = self.flatten(self.grammar["patterns"])

    def flatten(self, patterns):
        flat = []
        for pattern in patterns:
            if "include" in pattern:
                flat += self.flatten([self.grammar["repository"][pattern["include"][1:]]])
            elif "match" in pattern:
                flat.append((re.compile(pattern["match"]), pattern, None, None))
            elif "begin" in pattern:
                flat.append((re.compile(pattern["begin"]), pattern, re.compile(pattern["end"]),
                             self.flatten(pattern.get("patterns", []))))
            else:
                flat += self.flatten(pattern["patterns"])
        return flat

    # The kind of each character of a text.
    def colours(self, text):
        stack = []
        for line in text.split("\n"):
            row = ["other"] * (len(line) + 1)
            at = 0
            ahead = {}  # the next match of each pattern

            def search(pattern):
                found = ahead.get(pattern, 0)
                if found == 0 or (found and found.start() < at):
                    found = ahead[pattern] = pattern.search(line, at)
                return found

            while at <= len(line):
                end, inner, scope = stack[-1] if stack else (None, self.top, "")
                best = (search(end), None) if end else (None, None)
                for pattern in inner:
                    found = search(pattern[0])
                    if found and (not best[0] or found.start() < best[0].start()):
                        best = (found, pattern)
                found, pattern = best
                stop = found.start() if found else len(line)
                row[at:stop] = [kind_of(scope)] * (stop - at)
                if not found:
                    break
                at = found.end()
                if pattern is None:
                    row[found.start():at] = [kind_of(scope)] * (at - found.start())
                    stack.pop()
                    continue
                name = pattern[1].get("name", "")
                row[found.start():at] = [kind_of(name)] * (at - found.start())
                for group, capture in pattern[1].get("captures", {}).items():
                    first, last = found.span(int(group))
                    row[first:last] = [kind_of(capture["name"])] * (last - first)
                if pattern[2]:
                    stack.append((pattern[2], pattern[3], name))
            yield row


grammar = Grammar(sys.argv[1])
path, rows = None, []
for token in Path(sys.argv[2]).read_text(encoding="latin-1").splitlines():
    file, line, column, kind = token.split("\t")
    if file != path:
        path = file
        # A character for each byte.
        rows = list(grammar.colours(Path(path).read_bytes().decode("latin-1")))
    found = rows[int(line) - 1][int(column) - 1]
    if found != kind and not (found == "other" and kind in ("word", "sign")):
        print(f"{path}:{line}:{column} {kind} is {found}")
