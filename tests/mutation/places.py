"""Where one line of C++ can be made wrong, and how: the candidates of a source text, in its order.

The rules know the spelling that .clang-format gives the code: an operator between two operands has blanks around it, what
belongs to a type has not.
"""

import collections
import dataclasses
import re

# What the compiler sees as no code; blanked out, so that places keep their numbers.
NO_CODE = re.compile(r'//[^\n]*|/\*.*?\*/|^[ \t]*#[^\n]*|R"\(.*?\)"|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])+\'',
                     re.MULTILINE | re.DOTALL)
SWAPPED = {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "==", "&&": "||", "||": "&&", "+": "-", "-": "+",
           "+=": "-=", "-=": "+=", "*": "/", "/": "*", "%": "*", "&": "|", "|": "&", "<<": ">>", ">>": "<<",
           "true": "false", "false": "true", "std::min": "std::max", "std::max": "std::min"}
OPERATOR = re.compile(r"(?<= )(?:<=|>=|==|!=|&&|\|\||\+=|-=|<<|>>|[-<>+*/%&|])(?=\s)|\b(?:true|false|std::min|std::max)\b")
NUMBER = re.compile(r"(?<![\w.\"'])(?:0[xX][0-9a-fA-F]+|0|[1-9]\d*)(?=[uUlL]*(?![\w.\"']))")
PURE = re.compile(r"(?:\)|const|noexcept) = $")  # in front of the 0 of an operation without a body
CONDITION = re.compile(r"\b(?:if|while) (?=\()")
DECLARATION = re.compile(r"(?:const )?[\w:<>*& ]+ [*&]?(\w+) = ")
RETURN = re.compile(r"\breturn ([^;]+);")
SAME_AS_EMPTY = {"{}", "0", "false", "nullptr", "std::nullopt", "kScriptOk", "kChannelOk", "EONX_ERR_NONE"}
# A function's head begins its line.
FUNCTION = re.compile(r"^\w[\w:<>*&, ]*?\b(\w+)\(", re.MULTILINE)
# A call or an assignment that is a line of its own, behind the end of another statement.
STATEMENT = re.compile(r"(?<=[;{})])\n[ ]+(?!return\b|using\b|throw\b|delete\b)([\w:.>*()\[\]-]+(?:\(.*\)| [-+|&^]?= .*));(?=\n)")


@dataclasses.dataclass(frozen=True)
class Mutant:
    path: str
    function: str  # in whose body it stands; "" where none is
    occurrence: int  # of the same change there, from 1
    line: int  # from 1
    kind: str
    before: str  # the line, without blanks at its ends
    after: str
    text: str  # the whole file

    def place(self):
        return f"{self.path} {self.function}#{self.occurrence}"

    def keys(self):
        """All that it may be called: where a file or a function has the same line often, more tells which is meant."""
        return {(place, self.before, self.after) for place in (self.path, f"{self.path} {self.function}", self.place())}


def without_comments(text):
    return NO_CODE.sub(lambda match: re.sub(r"[^\n]", " ", match.group()), text)


def closing(code, start):
    """Behind the parenthesis that closes the one at `start`, and where the condition in it begins: behind an initialiser."""
    depth, begin = 0, start + 1
    for position in range(start, len(code)):
        depth += {"(": 1, "{": 1, "[": 1, ")": -1, "}": -1, "]": -1}.get(code[position], 0)
        if code[position] == ";" and depth == 1:
            begin = position + 2
        if depth == 0:
            return position, begin
    return len(code), begin


def changes(text):
    """(begin, end, replacement, kind) of each candidate."""
    code = without_comments(text)
    for match in OPERATOR.finditer(code):
        yield *match.span(), SWAPPED[match.group()], "operator"
    for match in NUMBER.finditer(code):
        if not PURE.search(code[:match.start()][-20:]):
            yield *match.span(), str(int(match.group(), 0) + 1), "constant"
    for match in CONDITION.finditer(code):
        end, begin = closing(code, match.end())
        declared = DECLARATION.match(code[begin:end])
        if declared:
            yield end, end, f"; !{declared.group(1)}", "negated"
            yield end, end, f"; false && {declared.group(1)}", "dropped"
        else:
            yield begin, end, f"!({text[begin:end]})", "negated"
            yield begin, end, f"false && ({text[begin:end]})", "dropped"
    for match in RETURN.finditer(code):
        if match.group(1) not in SAME_AS_EMPTY | {"true"}:
            yield *match.span(1), "{}", "returned"
    for match in STATEMENT.finditer(code):
        if not match.group(1).endswith((" = default", " = delete")):
            yield *match.span(1), "", "removed"


def mutants(path, text):
    """All of one file. A change over several lines (a long condition) is joined into the one where it begins."""
    found = []
    seen = collections.Counter()
    functions = [(match.start(), match.group(1)) for match in FUNCTION.finditer(without_comments(text))]
    for begin, end, new, kind in sorted(changes(text), key=lambda change: (change[0], change[3])):
        first = text.rfind("\n", 0, begin) + 1
        last = text.find("\n", end)
        before = " ".join(text[first:last].split())
        after = " ".join((text[first:begin] + new + text[end:last]).split())
        function = next((name for start, name in reversed(functions) if start <= begin), "")
        seen[function, before, after] += 1
        found.append(Mutant(path, function, seen[function, before, after], text.count("\n", 0, begin) + 1, kind, before, after,
                            text[:begin] + new + text[end:]))
    return found
