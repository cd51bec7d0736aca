"""What tests/mutate keeps: the list of changes without an effect, and the verdicts of its runs."""

import json


def read_equivalent(project):
    """The changes without an effect, as pairs of a file and its changed lines.

    A paragraph gives the reason in a comment, and then one or more mutants as tests/mutate prints
    them: a file's name, and lines marked - and +.
    """
    path = project / "tests" / "mutants-equivalent"
    if not path.exists():
        return []
    entries = []
    for line in path.read_text().splitlines():
        if line[:2] in ("- ", "+ ") or line in ("-", "+"):
            entries[-1][1].append(line)
        elif line and line[0] != "#":
            entries.append((line, []))
    return [(file, tuple(change)) for file, change in entries]


class Results:
    """The verdicts of all runs, by a mutant's file and changed lines; kept in a file."""

    def __init__(self, path):
        self.path = path
        self.verdicts = json.loads(path.read_text()) if path.exists() else {}

    def __getitem__(self, key):
        return self.verdicts.get("\n".join([key[0], *key[1]]))

    def __setitem__(self, key, verdict):
        self.verdicts["\n".join([key[0], *key[1]])] = verdict
        self.path.write_text(json.dumps(self.verdicts, indent=1))
