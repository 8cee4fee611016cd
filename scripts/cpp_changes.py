"""One-token changes of a C++ source: where there are any, and what each one puts there.

The sources are formatted by clang-format, and the rules lean on it: a binary
operator has a blank on both sides, a template's bracket, a pointer's star and a
sign do not.
"""

import re
from dataclasses import dataclass

TOKEN = re.compile(
    r"""(?P<space>\s+|\\\n)
      | (?P<comment>//[^\n]*|/\*.*?\*/)
      | (?P<directive>\#(?:\\\n|[^\n])*)
      | (?P<raw>(?:L|u8|u|U)?R"(?P<mark>[^()\s\\]*)\(.*?\)(?P=mark)")
      | (?P<string>(?:L|u8|u|U)?"(?:\\.|[^"\\\n])*")
      | (?P<char>(?:L|u8|u|U)?'(?:\\.|[^'\\\n])+')
      | (?P<number>\.?\d(?:'\w|[eEpP][+-]|[\w.])*)
      | (?P<name>[A-Za-z_]\w*)
      | (?P<sign><=>|<<=|>>=|->\*|\.\.\.|::|->|\+\+|--|<<|>>|<=|>=|==|!=|&&|\|\||[-+*/%&|^]=|.)""",
    re.VERBOSE | re.DOTALL,
)

BINARY = {
    "<": ("<=", ">="), "<=": ("<", ">"), ">": (">=", "<="), ">=": (">", "<"),
    "==": ("!=",), "!=": ("==",), "&&": ("||",), "||": ("&&",),
    "+": ("-",), "-": ("+",), "*": ("/",), "/": ("*",), "%": ("*",),
    "+=": ("-=",), "-=": ("+=",), "*=": ("/=",), "/=": ("*=",), "|=": ("&=",), "&=": ("|=",),
    "<<": (">>",), ">>": ("<<",), "&": ("|",), "|": ("&",),
}
STEPS = {"++": ("--",), "--": ("++",)}
NAMES = {
    "true": ("false",), "false": ("true",), "TRUE": ("FALSE",), "FALSE": ("TRUE",),
    "VARIANT_TRUE": ("VARIANT_FALSE",), "VARIANT_FALSE": ("VARIANT_TRUE",),
    "S_OK": ("S_FALSE",), "S_FALSE": ("S_OK",), "min": ("max",), "max": ("min",),
}
FAILURE = re.compile(r"(?:E|DISP_E|CLASS_E|SELFREG_E)_[A-Z]+")
INTEGER = re.compile(r"(0[xX][0-9a-fA-F']+|[0-9][0-9']*)([uUlLzZ]*)")
# No statement that begins with one of these is a call.
NO_CALL = {"return", "if", "for", "while", "switch", "throw", "delete", "using", "static_assert", "catch", "operator",
           "sizeof", "else", "do", "case", "new", "goto", "template", "friend", "explicit", "noexcept"}
CLOSING = {"(": ")", "[": "]", "{": "}"}


@dataclass(frozen=True)
class Token:
    kind: str
    text: str
    start: int

    @property
    def end(self):
        return self.start + len(self.text)


@dataclass(frozen=True)
class Site:
    """A place in a source, and the texts that may stand there instead."""

    line: int
    start: int
    end: int
    old: str
    choices: tuple


def tokens_of(source):
    """The source's tokens without blanks, comments and preprocessor lines."""
    return [Token(match.lastgroup if match.lastgroup != "mark" else "raw", match.group(), match.start())
            for match in TOKEN.finditer(source)
            if match.lastgroup not in ("space", "comment", "directive")]


def after_bracket(tokens, at):
    """The index after the bracket that closes the one at this index."""
    closing, depth = CLOSING[tokens[at].text], 0
    for index in range(at, len(tokens)):
        if tokens[index].kind != "sign":
            continue
        if tokens[index].text == tokens[at].text:
            depth += 1
        elif tokens[index].text == closing:
            depth -= 1
            if depth == 0:
                return index + 1
    return len(tokens)


def other_character(text):
    """The text with one character changed: the letter or digit nearest to its middle."""
    plain = [match for match in re.finditer(r"\\.|[^\\]", text, re.DOTALL)
             if re.fullmatch(r"[A-Za-z0-9]", match.group())]
    if not plain:
        return text + "x"
    match = min(plain, key=lambda each: (abs(2 * each.start() + 1 - len(text)), each.start()))
    character = match.group()
    follower = {"z": "a", "Z": "A", "9": "0"}.get(character, chr(ord(character) + 1))
    return text[: match.start()] + follower + text[match.end() :]


def other_literal(token):
    quote = '"' if token.kind == "string" else "'"
    prefix, inside = token.text[: token.text.index(quote)], token.text[token.text.index(quote) + 1 : -1]
    if token.kind == "char":
        changed = {"\\0": "\\1"}.get(inside) or (other_character(inside) if inside.isalnum() else "x")
    else:
        # An escape with digits, such as \x41, is left whole: its end is not seen here.
        changed = inside + "x" if re.search(r"\\[xuU0-7]", inside) else other_character(inside)
    return f"{prefix}{quote}{changed}{quote}"


def other_numbers(text):
    match = INTEGER.fullmatch(text)
    if match:
        digits, suffix = match.groups()
        value = int(digits.replace("'", ""), 16 if digits[:2] in ("0x", "0X") else 10)
        write = (lambda number: f"0x{number:X}") if digits[:2] in ("0x", "0X") else str
        return tuple(write(number) + suffix for number in (value + 1, value - 1) if number >= 0)
    if re.fullmatch(r"\d+\.\d*", text):
        return (str(int(text.split(".")[0]) + 1) + "." + text.split(".")[1],)
    return ()


def end_of_call(tokens, at):
    """The index of the semicolon that ends the call statement at this index; None when it is no such statement."""
    if tokens[at].kind != "name" or tokens[at].text in NO_CALL:
        return None
    index, called = at + 1, False
    while index < len(tokens):
        text = tokens[index].text
        if text == ";":
            return index if called else None
        if text in ("::", ".", "->"):
            if index + 1 >= len(tokens) or tokens[index + 1].kind != "name":
                return None
            index, called = index + 2, False
        elif text in ("(", "["):
            called = text == "("
            index = after_bracket(tokens, index)
        else:
            return None
    return None


def end_of_return(tokens, at):
    """The index of the semicolon after a returned expression of one line or more; None when braces stand in it."""
    for index in range(at + 1, len(tokens)):
        if tokens[index].text == ";":
            return index
        if tokens[index].kind == "sign" and tokens[index].text in "{}":
            return None
    return None


def skipped(tokens):
    """Indices of tokens that take no change: what only the compiler reads."""
    left_out = set()
    for index, token in enumerate(tokens):
        following = tokens[index + 1] if index + 1 < len(tokens) else token
        if token.text in ("static_assert", "alignas", "noexcept", "decltype") and following.text == "(":
            left_out.update(range(index, after_bracket(tokens, index + 1)))
        elif token.text == "[" and following.text == "[" and following.start == token.end:
            left_out.update(range(index, after_bracket(tokens, index)))
        elif token.text in ("operator", "extern"):
            left_out.add(index + 1)
        elif token.text == "=" and following.text == "0" and tokens[index - 1].text in (")", "const", "noexcept"):
            left_out.add(index + 1)  # a pure virtual function
    return left_out


def token_choices(source, tokens, index):
    """What may stand in place of one token."""
    token = tokens[index]
    if token.kind in ("string", "char"):
        return (other_literal(token),)
    if token.kind == "number":
        return other_numbers(token.text)
    if token.kind == "name":
        if token.text in ("min", "max") and tokens[index - 1].text != "::":
            return ()
        if FAILURE.fullmatch(token.text):
            return ("E_FAIL" if token.text != "E_FAIL" else "E_UNEXPECTED",)
        return NAMES.get(token.text, ())
    if token.kind != "sign":
        return ()
    if token.text in STEPS:
        return STEPS[token.text]
    before, after = source[token.start - 1 : token.start], source[token.end : token.end + 1]
    if token.text == "!" and not after.isspace():
        return ("",)
    if token.text in BINARY and before.isspace() and after.isspace():
        return BINARY[token.text]
    if token.text == "-" and index + 1 < len(tokens) and tokens[index + 1].kind == "number":
        return ("",)
    return ()


def statement_site(tokens, index):
    """(index of the last token, what may stand there) of a statement that may be changed as a whole."""
    text = tokens[index].text
    if text in ("break", "continue") and tokens[index + 1].text == ";":
        return index, ("continue" if text == "break" else "break", "")
    if text == "return":
        end = end_of_return(tokens, index)
        inside = " ".join(token.text for token in tokens[index + 1 : end]) if end else ""
        return (end - 1, ("return {}",)) if inside not in ("", "false", "0", "nullptr", "S_OK", "* this") else None
    if index and tokens[index - 1].text in (";", "{", "}"):
        end = end_of_call(tokens, index)
        return (end - 1, ("",)) if end else None
    return None


def sites_of(source):
    """Every place of the source that takes a change, in the order of the text."""
    tokens = tokens_of(source)
    left_out = skipped(tokens)
    sites = []

    def add(first, last, choices):
        start, end = tokens[first].start, tokens[last].end
        sites.append(Site(source.count("\n", 0, start) + 1, start, end, source[start:end], choices))

    for index, token in enumerate(tokens):
        if index in left_out:
            continue
        choices = token_choices(source, tokens, index)
        if choices:
            add(index, index, choices)
        statement = statement_site(tokens, index) if token.kind == "name" else None
        if statement:
            add(index, *statement)
    return sites


def described(old, new):
    """A change in a few words for a table: "< -> <=", "Draw(...) dropped"."""
    old = re.sub(r"\s+", " ", old)
    if old.startswith("return ") and new == "return {}":
        return f"{short(old)} -> {new}"
    return f"{short(old)} -> {short(new)}" if new else f"{short(old)} dropped"


def short(text):
    return text if len(text) <= 48 else text[:45] + "..."
