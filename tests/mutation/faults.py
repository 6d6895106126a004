"""Single faults in C++ text: where they can be planted, and the text with one of them in it.

Reads the code as the project's clang-format lays it out: binary operators stand between blanks,
brackets of templates do not. What does not compile is left to the compiler to refuse.
"""

import collections
import dataclasses
import re

TOKEN = re.compile(
    r"""(?P<blank>\s+|//[^\n]*|/\*.*?\*/|^[ \t]*\#(?:[^\n]*\\\n)*[^\n]*)
      | (?P<text>(?:u8|[uUL])?"(?:\\.|[^"\\])*")
      | (?P<character>'(?:\\.|[^'\\])+')
      | (?P<number>\d[\w.]*)
      | (?P<name>[A-Za-z_]\w*)
      | (?P<sign>->|::|\.\.\.|<<=|>>=|&&|\|\||[-+*/%&|^=!<>]=|<<|\+\+|--|.)""",
    re.VERBOSE | re.DOTALL | re.MULTILINE,
)

# Binary operators and what is written in their place; a comma drops the operand on the left.
OPERATORS = {
    "<": ["<=", ">="],
    "<=": ["<", ">"],
    ">": [">=", "<="],
    ">=": [">", "<"],
    "==": ["!="],
    "!=": ["=="],
    "&&": ["||", ","],
    "||": ["&&", ","],
    "+": ["-"],
    "-": ["+"],
    "*": ["/"],
    "/": ["*"],
    "%": ["/"],
    "&": ["|"],
    "|": ["&"],
    "^": ["|"],
    "+=": ["-=", "="],
    "-=": ["+=", "="],
    "*=": ["/="],
    "/=": ["*="],
    "&=": ["|=", "="],
    "|=": ["&=", "="],
}

# Names that are easily taken for one another.
TWINS = {
    "left": "right",
    "right": "left",
    "source": "destination",
    "destination": "source",
    "sourceStatus": "destinationStatus",
    "destinationStatus": "sourceStatus",
    "sourceMessage": "destinationMessage",
    "destinationMessage": "sourceMessage",
    "command": "arguments",
    "arguments": "command",
    "singular": "plural",
    "plural": "singular",
    "min": "max",
    "max": "min",
    "front": "back",
    "back": "front",
    "begin": "end",
    "end": "begin",
    "cbegin": "cend",
    "cend": "cbegin",
    "rbegin": "rend",
    "rend": "rbegin",
    "crbegin": "crend",
    "crend": "crbegin",
    "append": "assign",
    "assign": "append",
    "malloc": "calloc",
    "size": "empty",
    "path1": "path2",
    "path2": "path1",
    "is_regular_file": "is_directory",
    "is_directory": "is_regular_file",
    "PosixUpper": "PosixLower",
    "PosixLower": "PosixUpper",
    "_NL_CTYPE_TOUPPER": "_NL_CTYPE_TOLOWER",
    "_NL_CTYPE_TOLOWER": "_NL_CTYPE_TOUPPER",
    "ToUpper": "ToLower",
    "ToLower": "ToUpper",
    "is_arithmetic_v": "is_floating_point_v",
    "majorVersion": "minorVersion",
    "minorVersion": "microVersion",
    "microVersion": "majorVersion",
    "stateLock": "requestLock",
    "requestLock": "enableLock",
    "enableLock": "stateLock",
    "ICANON": "ISIG",
    "ECHO": "ECHOE",
    "StdWStrToUtf8": "Utf16ToUtf8",
    "DocumentsLocation": "ApplicationsLocation",
    "ApplicationsLocation": "DocumentsLocation",
    "GenericDataLocation": "AppDataLocation",
    "KeepEmptyParts": "SkipEmptyParts",
    "CaseSensitive": "CaseInsensitive",
    "fromUtf8": "fromLatin1",
    "toUtf8": "toLatin1",
    "not_found": "none",
    "none": "not_found",
    "regular": "directory",
    "directory": "regular",
}


@dataclasses.dataclass(frozen=True)
class Fault:
    """One fault: `text` in place of the characters from `start` to `end` of the file."""

    kind: str
    start: int
    end: int
    text: str


@dataclasses.dataclass
class Token:
    kind: str
    text: str
    start: int
    end: int
    spaced: bool = False  # between blanks
    partner: int = -1  # of a bracket
    code: bool = False  # within a function, or in what initialises something


def tokenise(source):
    tokens = []
    for match in TOKEN.finditer(source):
        if match.lastgroup == "blank":
            continue
        start, end = match.span()
        spaced = source[start - 1 : start].isspace() and source[end : end + 1].isspace()
        tokens.append(Token(match.lastgroup, match.group(), start, end, spaced))
    opened = []
    for index, token in enumerate(tokens):
        if token.kind == "sign" and token.text in "([{":
            opened.append(index)
        elif token.kind == "sign" and token.text in ")]}":
            token.partner = opened.pop()
            tokens[token.partner].partner = index
    return tokens


class Finder:
    """Finds the faults of one file."""

    def __init__(self, source, members):
        self.source = source
        self.members = members
        self.tokens = tokenise(source)
        self.faults = []
        self.declarations(0, len(self.tokens))
        for index, token in enumerate(self.tokens):
            if token.code:
                self.at(index, token)
        unique = dict.fromkeys(f for f in self.faults if source[f.start : f.end] != f.text)
        self.faults = sorted(unique, key=lambda f: (f.start, f.end, f.kind, f.text))

    def plant(self, kind, first, last, text):
        """`text` in place of the tokens from `first` to `last`, both included."""
        self.faults.append(Fault(kind, self.tokens[first].start, self.tokens[last].end, text))

    def words(self, first, last):
        """The text from token `first` to token `last`, both included."""
        return self.source[self.tokens[first].start : self.tokens[last].end]

    def is_at(self, index, *texts):
        return index < len(self.tokens) and self.tokens[index].text in texts

    # Declarations: of a namespace or of a class

    def declarations(self, index, end):
        while index < end:
            index = self.declaration(index, end)

    def declaration(self, index, end):
        """Goes through one declaration and returns what stands behind it."""
        if self.is_at(index, "template"):
            index = self.behind_angles(index + 1)
        first = index
        is_type = self.is_at(first, "class", "struct", "enum", "union", "namespace", "extern")
        skipped = self.is_at(first, "using", "static_assert", "typedef")
        parameters = None
        initialised = False
        while index < end:
            token = self.tokens[index]
            if token.text == ";":
                return index + 1
            if token.text == ":" and self.is_at(index - 1, "public", "private", "protected"):
                return index + 1
            if token.text == ":" and self.is_at(index - 1, "Q_SIGNALS"):
                return index + 1
            if token.text == "operator":
                index += 1
                while not self.is_at(index + 1, "(") or self.is_at(index, "("):
                    index += 1
            elif token.text == "(" and not initialised:
                if parameters is None:
                    parameters = index
                elif not skipped:
                    self.mark(index, token.partner)  # what a constructor gives its members
                self.default_arguments(index)
                index = token.partner
            elif token.text == "=" and not skipped:
                initialised = True
                if not is_type and not self.is_at(index + 1, "default", "delete"):
                    self.mark(index + 1, self.statement_end(index, end))
            elif token.text == "{":
                index = self.braces(index, first, is_type, parameters, initialised)
                if self.is_at(index, "}") and parameters is not None and not initialised:
                    return index + 1
                if is_type and not self.is_at(index + 1, ";"):
                    return index + 1
            index += 1
        return index

    def braces(self, index, first, is_type, parameters, initialised):
        """What a brace in a declaration opens; returns where it closes."""
        partner = self.tokens[index].partner
        if is_type and parameters is None:
            if self.is_at(first, "enum"):
                self.mark(index + 1, partner - 1)
            else:
                self.declarations(index + 1, partner)
        elif parameters is not None and not initialised:
            self.swap_parameters(parameters)
            self.mark(index + 1, partner - 1)
            self.statements(index + 1, partner)
        else:
            self.mark(index + 1, partner - 1)
        return partner

    def behind_angles(self, index):
        depth = 0
        while True:
            text = self.tokens[index].text
            depth += (text == "<") - (text == ">")
            index += 1
            if depth == 0:
                return index

    def default_arguments(self, opening):
        inside = False
        for index in range(opening + 1, self.tokens[opening].partner):
            token = self.tokens[index]
            if token.text == "=":
                inside = True
            elif token.text == ",":
                inside = False
            token.code = token.code or (inside and token.text != "=")

    def mark(self, first, last):
        for index in range(first, last + 1):
            self.tokens[index].code = True

    def statement_end(self, index, end):
        """The last token before the semicolon."""
        while index < end and not self.is_at(index, ";"):
            partner = self.tokens[index].partner
            index = partner + 1 if partner > index else index + 1
        return index - 1

    # Statements: of a function

    def statements(self, index, end):
        while index < end:
            index = self.statement(index, end, guarded=False)

    def statement(self, index, end, guarded):
        """Goes through one statement and returns what stands behind it."""
        token = self.tokens[index]
        if token.text == "{":
            self.statements(index + 1, token.partner)
            return token.partner + 1
        if token.text in ("if", "while", "for", "switch", "catch"):
            return self.conditional(index, end)
        if token.text in ("else", "do", "try"):
            return self.statement(index + 1, end, guarded=True)
        if token.text in ("case", "default"):
            while not self.is_at(index, ":"):
                index += 1
            return index + 1
        last = self.statement_end(index, end)
        self.lambdas(index, last)
        self.simple(index, last, guarded, is_last=last + 2 >= end)
        return last + 2

    def conditional(self, index, end):
        word = self.tokens[index].text
        opening = index + (2 if self.is_at(index + 1, "constexpr") else 1)
        closing = self.tokens[opening].partner
        if word == "if" and self.statement_end(opening + 1, closing) == closing - 1:
            condition = self.words(opening + 1, closing - 1)
            if not re.search(r"[^=!<>]=[^=]", condition) and not self.is_at(index + 1, "constexpr"):
                if not is_one_comparison(condition):
                    self.plant("condition", opening + 1, closing - 1, f"!({condition})")
                self.plant("condition", opening + 1, closing - 1, "true")
                self.plant("condition", opening + 1, closing - 1, "false")
        if word in ("for", "while"):
            body_end = self.statement(closing + 1, end, guarded=True)
            self.plant("statement", closing + 1, body_end - 1, "break;")
            return body_end
        return self.statement(closing + 1, end, guarded=True)

    def lambdas(self, first, last):
        for index in range(first, last + 1):
            if self.is_at(index, "{") and self.is_at(index - 1, ")") and index > first + 1:
                opening = self.tokens[index - 1].partner
                if self.is_at(opening - 1, "]"):
                    self.statements(index + 1, self.tokens[index].partner)

    def simple(self, first, last, guarded, is_last):
        word = self.tokens[first].text
        if word in ("using", "static_assert", "friend", "break"):
            for token in self.tokens[first : last + 1]:
                token.code = False
            return
        if word == "return" and last > first:
            value = self.words(first + 1, last)
            if value not in ("{}", "std::nullopt", "nullptr", "true", "false"):
                self.plant("result", first, last, "return {}")
            if re.search(r" (&&|\|\|) ", value):
                self.plant("result", first, last, f"return !({value})")
        if word == "return" and is_last and not guarded and last > first:
            return
        declares = re.match(
            r"(static |thread_local |constexpr )*[\w:<>]+( const)?[&*]* (const )?\w+ = ",
            self.words(first, last),
        )
        if not declares:
            self.plant("statement", first, last + 1, ";")

    # Expressions

    def at(self, index, token):
        if token.kind == "number":
            self.number(index, token.text)
        elif token.kind == "character":
            self.character(index, token.text)
        elif token.kind == "text":
            self.text(index, token.text)
        elif token.kind == "name":
            self.name(index, token.text)
        elif token.spaced and token.text in OPERATORS:
            for other in OPERATORS[token.text]:
                self.plant("operator", index, index, other)
        elif token.text in ("++", "--"):
            self.plant("operator", index, index, "--" if token.text == "++" else "++")
        elif token.text in ("!", "~") or (token.text == "-" and not token.spaced):
            if not self.is_at(index - 1, "operator"):
                self.plant("negation", index, index, "")
        elif token.text == "?":
            self.choice(index)
        elif token.text in ("(", "{") and token.partner > index + 1:
            self.swap_arguments(index)

    def number(self, index, text):
        match = re.fullmatch(r"(0x)?([0-9a-fA-F]+?)([uUlL]*)", text)
        if not match:
            return
        base = 16 if match[1] else 10
        value = int(match[2], base)
        for other in (value + 1, value - 1):
            shown = hex(other) if base == 16 else str(other)
            self.plant("constant", index, index, shown + match[3])

    def character(self, index, text):
        if text.startswith("'\\"):
            self.plant("constant", index, index, "'\\1'" if text != "'\\1'" else "'\\2'")
        else:
            self.plant("constant", index, index, f"'{chr(ord(text[1]) + 1)}'")

    def text(self, index, text):
        opening = text.index('"') + 1
        prefix, inner = text[:opening], text[opening:-1]
        self.plant("text", index, index, prefix + ("" if inner else "x") + '"')
        letter = re.search(r"(?<![%\\\w])[A-Za-z]", inner) or re.search(r"(?<![%\\])[A-Za-z]", inner)
        if letter:
            at = letter.start()
            other = "q" if inner[at] != "q" else "w"
            self.plant("text", index, index, f'{prefix}{inner[:at]}{other}{inner[at + 1:]}"')
        if len(inner) > 2:
            self.plant("text", index, index, f'{prefix}{inner[:-1]}"' if inner[-2] != "\\" else text)

    def name(self, index, text):
        if text in ("true", "false"):
            self.plant("constant", index, index, "false" if text == "true" else "true")
        elif text in TWINS and (text != "size" or self.is_at(index + 1, "(")):
            self.plant("name", index, index, TWINS[text])
        elif text in self.members:
            self.plant("name", index, index, self.members[text])

    def choice(self, index):
        colon = index + 1
        while not self.is_at(colon, ":"):
            partner = self.tokens[colon].partner
            colon = partner + 1 if partner > colon else colon + 1
        last = colon + 1
        while not self.is_at(last, ";", ",", ")", "}", ":"):
            partner = self.tokens[last].partner
            last = partner + 1 if partner > last else last + 1
        one, other = self.words(index + 1, colon - 1), self.words(colon + 1, last - 1)
        self.plant("choice", index + 1, last - 1, f"{other} : {one}")

    # Arguments and parameters

    def parts(self, opening):
        """First and last token of what stands between the commas of a bracket."""
        parts, first, index = [], opening + 1, opening + 1
        closing = self.tokens[opening].partner
        while index <= closing:
            if self.is_at(index, ",") or index == closing:
                if index > first:
                    parts.append((first, index - 1))
                first = index + 1
                index += 1
                continue
            partner = self.tokens[index].partner
            index = partner + 1 if partner > index else index + 1
        return parts

    def swap_arguments(self, opening):
        before = self.tokens[opening - 1]
        if before.text in ("if", "while", "for", "switch", "catch"):
            return
        parts = self.parts(opening)
        if any(self.is_at(first, ";") for first, _ in parts) or self.has_statements(opening):
            return
        for (first, last), (next_first, next_last) in zip(parts, parts[1:]):
            one, other = self.words(first, last), self.words(next_first, next_last)
            between = self.source[self.tokens[last].end : self.tokens[next_first].start]
            one_is_text = self.tokens[first].kind == "text"
            if one != other and one_is_text == (self.tokens[next_first].kind == "text"):
                self.plant("arguments", first, next_last, f"{other}{between}{one}")

    def has_statements(self, opening):
        closing = self.tokens[opening].partner
        return any(self.is_at(index, ";") for index in range(opening, closing))

    def swap_parameters(self, opening):
        parts = self.parts(opening)
        for (first, last), (next_first, next_last) in zip(parts, parts[1:]):
            same_type = self.words(first, last - 1) == self.words(next_first, next_last - 1)
            names = self.tokens[last], self.tokens[next_last]
            if same_type and last > first and all(t.kind == "name" for t in names):
                kind = self.words(first, last - 1)
                between = self.source[self.tokens[last].end : self.tokens[next_first].start]
                swapped = f"{kind} {names[1].text}{between}{kind} {names[0].text}"
                self.plant("arguments", first, next_last, swapped)


def is_one_comparison(condition):
    """Whether another fault, of its one operator, negates the condition as well."""
    if re.search(r" (&&|\|\|) ", condition):
        return False
    return condition.startswith("!") or bool(re.search(r" (==|!=) ", condition))


def members(header):
    """For each data member of a header the next of the same type, to be taken for it."""
    declared = collections.defaultdict(list)
    pattern = r"^\s+((?:inline |static |const )*[\w:<>]+(?: const)?[*&]*) (m_\w+)(?=[ ;{])"
    for kind, name in re.findall(pattern, header, re.MULTILINE):
        declared[kind].append(name)
    return {n: names[i - 1] for names in declared.values() for i, n in enumerate(names)}


def find(source, twins):
    """All faults of a file, in the order of the text; `twins` are those of `members`."""
    return Finder(source, twins).faults


def planted(source, fault):
    """The text of the file with the fault in it."""
    return source[: fault.start] + fault.text + source[fault.end :]


def lines(source, fault):
    """The lines that the fault touches, as they are and as they become, blanks made one."""
    first = source.rfind("\n", 0, fault.start) + 1
    last = source.find("\n", fault.end)
    last = len(source) if last < 0 else last
    before = source[first:last]
    after = source[first : fault.start] + fault.text + source[fault.end : last]
    return " ".join(before.split()), " ".join(after.split())
