"""Enumerates the mutants of C++ sources: small changes of behaviour that a test should notice.

Works on the text and relies on clang-format's spacing: a binary operator has a space on both sides,
a template bracket, a pointer's star and a sign do not.
"""

import difflib
import random
import re
from dataclasses import dataclass

SWAPS = {
    "comparison": {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "=="},
    "arithmetic": {"+": "-", "-": "+", "*": "/", "/": "*", "+=": "-=", "-=": "+="},
    "logic": {"&&": "||", "||": "&&"},
    "bits": {"&": "|", "|": "&", "<<": ">>", ">>": "<<"},
}
NOT_CODE = re.compile(
    r"//[^\n]*|/\*.*?\*/|^[ \t]*#(?:\\\n|[^\n])*"
    r'|(?P<literal>"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])*\')',
    re.DOTALL | re.MULTILINE)
STATEMENT = re.compile(
    r"^[ \t]+(?P<statement>(?:emit |\*)?[A-Za-z_][\w:]*(?:<[\w:]+>)?(?:\(|->|\.|\[|\+\+| [-+]?= )"
    r"|delete \w|(?:break|continue|return);)", re.MULTILINE)
CLOSING = {"(": ")", "{": "}", "[": "]"}


@dataclass(frozen=True)
class Mutant:
    """One change of a source file: the characters from begin to end are replaced."""

    file: str
    kind: str
    begin: int
    end: int
    replacement: str

    def applied_to(self, source):
        return source[:self.begin] + self.replacement + source[self.end:]

    def line(self, source):
        return source.count("\n", 0, self.begin) + 1

    def change(self, source):
        """The removed and the added lines, marked - and +, without their indentation."""
        lines = difflib.unified_diff(source.splitlines(), self.applied_to(source).splitlines(),
                                     lineterm="", n=0)
        return tuple(f"{line[0]} {line[1:].strip()}".rstrip()
                     for line in list(lines)[2:] if line[0] in "-+")


def code_of(source):
    """The source with comments, directives and literals blanked out; every place stays the same."""
    def blanked(match):
        filler = "_" if match["literal"] else " "
        return re.sub(r"[^\n]", filler, match[0])
    return NOT_CODE.sub(blanked, source)


def lines_of_code(source):
    return sum(1 for line in code_of(source).splitlines() if re.search(r"\w", line))


def end_of(code, begin, closing):
    """The place of the next `closing` at the same depth of brackets, or None."""
    expected = []
    for place in range(begin, len(code)):
        letter = code[place]
        if letter == closing and not expected:
            return place
        if letter in CLOSING:
            expected.append(CLOSING[letter])
        elif letter in CLOSING.values() and (not expected or expected.pop() != letter):
            return None
    return None


def swaps(code):
    for kind, pairs in SWAPS.items():
        operators = "|".join(re.escape(sign) for sign in sorted(pairs, key=len, reverse=True))
        for match in re.finditer(rf"(?<=\s)(?:{operators})(?=\s)", code):
            yield kind, match.start(), match.end(), pairs[match[0]]
    for match in re.finditer(r"\+\+|--", code):
        yield "arithmetic", match.start(), match.end(), "--" if match[0] == "++" else "++"
    for match in re.finditer(r"\b(?:true|false)\b", code):
        yield "constant", match.start(), match.end(), "false" if match[0] == "true" else "true"
    for match in re.finditer(r"!(?=[\w(])", code):
        yield "logic", match.start(), match.end(), ""
    for match in re.finditer(r"(?<=[\s({\[])-(?=[\w(])", code):
        yield "arithmetic", match.start(), match.end(), ""


def constants(code):
    for match in re.finditer(r"(?<![\w.])(?:0x([0-9A-Fa-f]+)|(\d+)(\.\d+)?)([A-Za-z]*)\b", code):
        hexadecimal, whole, fraction, suffix = match.groups()
        if hexadecimal:
            number = f"0x{int(hexadecimal, 16) + 1:0{len(hexadecimal)}X}"
        else:
            number = f"{int(whole) + 1}{fraction or ''}"
        yield "constant", match.start(), match.end(), number + suffix


def conditions(code):
    for match in re.finditer(r"\b(?:if|while) \(", code):
        end = end_of(code, match.end(), ")")
        begin = code.rfind(";", match.end(), end) + 1 or match.end()
        if end and not re.match(r"\s*(?:const|auto)\b", code[begin:end]):
            yield "condition", begin, end, None


def returns(code):
    for match in re.finditer(r"\breturn (?!(?:true|false|0|nullptr|std::nullopt|\{\});)", code):
        end = end_of(code, match.end(), ";")
        if end:
            yield "return", match.end(), end, "{}"


def statements(code):
    for match in STATEMENT.finditer(code):
        begin = match.start("statement")
        if not re.search(r"(?:[;{}):]|\belse)\s*\Z", code[:begin]):
            continue  # the line continues an expression
        end = end_of(code, begin, ";")
        if end:
            yield "statement", begin, end, ""


def mutants_of(file, source):
    """All mutants of a source in a fixed order."""
    code = code_of(source)
    found = []
    for operator in (swaps, constants, conditions, returns, statements):
        for kind, begin, end, replacement in operator(code):
            if replacement is None:
                replacement = f"!({source[begin:end].strip()})"
            found.append(Mutant(file, kind, begin, end, replacement))
    return found


def chosen(sources, seed):
    """All mutants of the sources (texts by file), in an order that depends on the seed alone.

    Files come up in proportion to their lines of code, and within a file each kind of change as
    often as any other, so that tables of constants do not dominate.
    """
    dice = random.Random(seed)
    left = {file: mutants_of(file, sources[file]) for file in sorted(sources)}
    lines = {file: lines_of_code(sources[file]) for file in left}
    while files := [file for file in left if left[file]]:
        file = dice.choices(files, [lines[file] for file in files])[0]
        kind = dice.choice(sorted({mutant.kind for mutant in left[file]}))
        mutant = dice.choice([mutant for mutant in left[file] if mutant.kind == kind])
        left[file].remove(mutant)
        yield mutant
