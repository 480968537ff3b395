"""The faults: what each operator makes of a node of the syntax tree.

An operator is a function of a Place that yields Edits; it is listed in OPERATORS under the name that reports and the
list of equivalents use, with its share of a sample. An edit replaces one stretch of the file.
"""
import re
import zlib
from dataclasses import dataclass

from clang.cindex import CursorKind as K
from clang.cindex import TypeKind as T


@dataclass(frozen=True)
class Edit:
    start: int
    end: int
    text: str


class Place:
    """A node with its ancestors and the bytes of its file."""

    def __init__(self, node, parents, source):
        self.node = node
        self.parents = parents
        self.source = source
        self.kind = node.kind
        self.start, self.end = span(node)

    @property
    def parent(self):
        return self.parents[-1] if self.parents else None

    def text(self, start=None, end=None):
        return self.source[self.start if start is None else start:self.end if end is None else end].decode()

    def children(self):
        return list(self.node.get_children())

    def of(self, node):
        return self.text(*span(node))


def span(node):
    return node.extent.start.offset, node.extent.end.offset


STATEMENTS = (K.COMPOUND_STMT, K.IF_STMT, K.FOR_STMT, K.WHILE_STMT, K.DO_STMT, K.CXX_FOR_RANGE_STMT)
FUNCTIONS = (K.FUNCTION_DECL, K.CXX_METHOD, K.CONSTRUCTOR, K.DESTRUCTOR, K.CONVERSION_FUNCTION, K.FUNCTION_TEMPLATE)
JUMPS = (K.RETURN_STMT, K.BREAK_STMT, K.CONTINUE_STMT)
LITERALS = (K.INTEGER_LITERAL, K.CXX_BOOL_LITERAL_EXPR, K.CXX_NULL_PTR_LITERAL_EXPR, K.FLOATING_LITERAL,
            K.CHARACTER_LITERAL)


# --- What the operators ask of a node


def statement_end(place, node):
    """Behind the semicolon of an expression, a declaration or a jump; None where a macro hides it."""
    start, end = span(node)
    if place.source[end - 1:end] == b";":
        return end
    found = re.match(rb"\s*;", place.source[end:end + 100])
    return end + found.end() if found else None


def is_statement(place):
    """An expression that stands as a statement of its own."""
    if place.parent is None or not place.kind.is_expression() or statement_end(place, place.node) is None:
        return False
    if place.parent.kind == K.COMPOUND_STMT:
        return True
    if place.parent.kind not in STATEMENTS:
        return False
    body = list(place.parent.get_children())[1 if place.parent.kind == K.IF_STMT else -1:]
    return any(span(node) == (place.start, place.end) for node in body)


def inner(node):
    """Without the conversions, brackets and temporaries around it."""
    while node.kind in (K.UNEXPOSED_EXPR, K.PAREN_EXPR):
        children = list(node.get_children())
        if len(children) != 1:
            break
        node = children[0]
    return node


def infix(place):
    """The operator between two operands and where it stands; None for anything else."""
    children = place.children()
    if place.kind == K.BINARY_OPERATOR and len(children) == 2:
        first, second = children
    elif place.kind == K.CALL_EXPR and place.node.spelling.startswith("operator") and len(children) == 3:
        first, _, second = children
    else:
        return None
    start, end = span(first)[1], span(second)[0]
    gap = place.source[start:end]
    sign = gap.strip().decode(errors="replace")
    if not re.fullmatch(r"[<>=!&|+\-*/%^]{1,3}", sign):
        return None
    start += gap.index(sign.encode())
    return sign, start, start + len(sign), first, second


def neighbours(place):
    """Pairs of statements that stand one behind the other in a compound statement."""
    children = place.children()
    return zip(children, children[1:])


def names_in(node):
    found = {child.spelling for child in node.walk_preorder()
             if child.kind in (K.DECL_REF_EXPR, K.MEMBER_REF_EXPR) and child.spelling}
    return found


def has_call(node):
    return any(child.kind in (K.CALL_EXPR, K.CXX_NEW_EXPR, K.CXX_DELETE_EXPR) for child in node.walk_preorder())


def is_member_set_to_literal(place):
    parts = infix(place)
    return bool(parts and parts[0] == "=" and inner(parts[3]).kind == K.MEMBER_REF_EXPR and
                (inner(parts[4]).kind in LITERALS or is_enumerator(inner(parts[4]))))


def is_enumerator(node):
    return node.kind == K.DECL_REF_EXPR and node.referenced is not None and \
        node.referenced.kind == K.ENUM_CONSTANT_DECL


def is_bool(node):
    return node.type.get_canonical().kind == T.BOOL


def pick(place, count):
    """One of several ways to change a place, the same on every run and wherever the line moves."""
    return zlib.crc32(place.source[place.start - 8:place.end]) % count


# --- Statements


def leave_out(place):
    if is_statement(place) and not is_member_set_to_literal(place):
        yield Edit(place.start, statement_end(place, place.node), ";")


def leave_out_flag(place):
    if is_statement(place) and is_member_set_to_literal(place):
        yield Edit(place.start, statement_end(place, place.node), ";")


def leave_out_check(place):
    """if (...) return; and its like, gone."""
    if place.kind != K.IF_STMT or len(place.children()) != 2:
        return
    body = place.children()[1]
    if body.kind == K.COMPOUND_STMT:
        inside = list(body.get_children())
        body = inside[-1] if inside else body
    end = statement_end(place, place.node) if place.source[place.end - 1:place.end] != b"}" else place.end
    if body.kind in JUMPS and end is not None:
        yield Edit(place.start, end, ";")


def are_apart(place, first, second):
    """Two assignments without a call, of which neither reads or writes what the other writes: `a.x = b.x; a.y = b.y;`"""
    texts = [place.text(*span(node)) for node in (first, second)]
    written = [re.match(r"([\w.\->\[\]]+) = ", text) for text in texts]
    return (all(written) and not has_call(first) and not has_call(second) and
            written[0].group(1) not in texts[1] and written[1].group(1) not in texts[0])


def exchange(place):
    """Two calls one behind the other, or a value and its use."""
    if place.kind != K.COMPOUND_STMT:
        return
    for first, second in neighbours(place):
        if not (first.kind.is_expression() and second.kind.is_expression()):
            continue
        if are_apart(place, first, second):
            continue
        depends = bool(names_in(first) & names_in(second))
        if not (has_call(first) and has_call(second)) and not depends:
            continue
        end, last = statement_end(place, first), statement_end(place, second)
        if end is not None and last is not None:
            yield Edit(span(first)[0], last, place.text(span(second)[0], last) + place.text(end, span(second)[0]) +
                       place.text(span(first)[0], end))


def return_early(place):
    if place.kind not in FUNCTIONS or place.node.kind == K.FUNCTION_TEMPLATE and "auto" in place.node.result_type.spelling:
        return
    body = [child for child in place.node.get_children() if child.kind == K.COMPOUND_STMT]
    if not body:
        return
    result = place.node.result_type
    nothing = place.kind in (K.CONSTRUCTOR, K.DESTRUCTOR) or result.kind == T.VOID
    if result.get_canonical().kind in (T.LVALUEREFERENCE, T.RVALUEREFERENCE):
        return
    value = "return;" if nothing else "return true;" if result.kind == T.BOOL else "return {};"
    for statement in body[0].get_children():
        if not re.match(r"return( (true|false|0|nullptr|\{\}))?$", place.of(statement)):
            yield Edit(span(statement)[0], span(statement)[0], value + " ")


# --- Conditions


NEIGHBOUR_SIGN = {"<": "<=", "<=": "<", ">": ">=", ">=": ">"}
OPPOSITE_SIGN = {"==": "!=", "!=": "=="}
OTHER_JUNCTION = {"&&": "||", "||": "&&"}


def signs(place, table):
    parts = infix(place)
    if parts and parts[0] in table:
        yield Edit(parts[1], parts[2], table[parts[0]])


def off_by_one(place):
    return signs(place, NEIGHBOUR_SIGN)


def turn(place):
    yield from signs(place, OPPOSITE_SIGN)
    if place.kind == K.UNARY_OPERATOR and place.text().startswith("!"):
        yield Edit(place.start, place.start + 1, "")
    condition = None
    if place.kind == K.IF_STMT:
        condition = place.children()[0]
    elif place.kind == K.RETURN_STMT and place.children():
        condition = place.children()[0]
    elif place.kind == K.CONDITIONAL_OPERATOR:
        condition = place.children()[0]
    if condition is None or not is_bool(condition) or condition.kind == K.VAR_DECL:
        return
    condition = inner(condition)
    if condition.kind not in (K.BINARY_OPERATOR, K.UNARY_OPERATOR, K.CXX_BOOL_LITERAL_EXPR):
        start, end = span(condition)
        yield Edit(start, end, "!(" + place.text(start, end) + ")")


def join_otherwise(place):
    return signs(place, OTHER_JUNCTION)


def leave_out_part(place):
    parts = infix(place)
    if parts and parts[0] in OTHER_JUNCTION:
        yield Edit(place.start, span(parts[4])[0], "")
        yield Edit(span(parts[3])[1], place.end, "")


# --- Values


def next_number(text, step):
    found = re.fullmatch(r"(0[xX][0-9a-fA-F']+|\d[\d']*)([uUlLzZ]*)", text)
    if not found:
        return None
    digits, suffix = found.group(1).replace("'", ""), found.group(2)
    value = int(digits, 16 if digits[:2].lower() == "0x" else 10) + step
    if value < 0:
        return None
    if digits[:2].lower() == "0x":
        return "0x%0*X%s" % (len(digits) - 2, value, suffix)
    return "%d%s" % (value, suffix)


def next_fraction(text):
    found = re.fullmatch(r"([\d.]*\d)(\.?)([fFlL]?)", text)
    if not found:
        return None
    digits = found.group(1)
    return digits[:-1] + str((int(digits[-1]) + 1) % 10) + found.group(2) + found.group(3)


def next_character(text):
    if not re.fullmatch(r"'[ -~]'", text) or text[1] in "\\'":
        return None
    code = ord(text[1])
    return "'%s'" % (chr(code + 1) if chr(code + 1) not in "\\'" + chr(127) else chr(code - 1))


def is_array_size(place):
    return place.parent is not None and place.parent.kind in (K.VAR_DECL, K.FIELD_DECL) and \
        place.parent.type.kind == T.CONSTANTARRAY and place.source[place.end:place.end + 1] == b"]"


def change_constant(place):
    text = place.text()
    if place.kind == K.INTEGER_LITERAL:
        step = -1 if is_array_size(place) or (pick(place, 2) and text != "0") else 1
        changed = next_number(text, step)
    elif place.kind == K.FLOATING_LITERAL:
        changed = next_fraction(text)
    elif place.kind == K.CHARACTER_LITERAL:
        changed = next_character(text)
    elif place.kind == K.CXX_BOOL_LITERAL_EXPR:
        changed = {"true": "false", "false": "true"}.get(text)
    else:
        return
    if changed is not None:
        yield Edit(place.start, place.end, changed)


def change_enumerator(place):
    if not is_enumerator(place.node) or place.node.spelling.startswith("LOG_LEVEL_"):
        return
    other = neighbour_enumerator(place.node.referenced)
    name = place.node.spelling
    if other and place.text().endswith(name):
        yield Edit(place.end - len(name), place.end, other)


def neighbour_enumerator(constant):
    names = [child.spelling for child in constant.semantic_parent.get_children() if child.kind == K.ENUM_CONSTANT_DECL]
    if constant.spelling not in names or len(names) < 2:
        return None
    index = names.index(constant.spelling)
    return names[index + 1] if index + 1 < len(names) else names[index - 1]


def plain_type(node):
    return re.sub(r"\bconst\b|[&\s]", "", node.type.get_canonical().spelling)


def exchange_arguments(place):
    if place.kind == K.CALL_EXPR and not place.node.spelling.startswith("operator"):
        values = [value for value in place.node.get_arguments() if value is not None]
    elif place.kind == K.INIT_LIST_EXPR:
        values = [value for value in place.children() if value.kind != K.INIT_LIST_EXPR]
    else:
        return
    for first, second in zip(values, values[1:]):
        one, other = place.of(first), place.of(second)
        between = place.text(span(first)[1], span(second)[0])
        if one and other and one != other and between.strip() == "," and "%" not in one + other and \
                plain_type(inner(first)) == plain_type(inner(second)):
            yield Edit(span(first)[0], span(second)[1], other + between + one)


# --- Locks


def lock_statement(node):
    """The declaration statement of a guard of the house."""
    if node.kind != K.DECL_STMT:
        return False
    children = list(node.get_children())
    return len(children) == 1 and children[0].kind == K.VAR_DECL and \
        bool(re.search(r"Lock\b|lock_guard|unique_lock|scoped_lock", children[0].type.spelling))


def move_lock(place):
    if place.kind != K.COMPOUND_STMT:
        return
    children = place.children()
    for number, guard in enumerate(children):
        if not lock_statement(guard):
            continue
        start, end = span(guard)
        yield Edit(start, end, ";")
        yield Edit(start, end, "{ " + place.text(start, end) + " }")
        if number + 1 < len(children):
            follower = children[number + 1]
            last = statement_end(place, follower) or span(follower)[1]
            yield Edit(start, last, place.text(end, last).lstrip() + " " + place.text(start, end))
        if number == 0 and place.parent is not None and place.parent.kind == K.COMPOUND_STMT:
            yield Edit(place.start, place.end, place.text()[1:-1])


# --- Texts


NOT_WORDS = r"%[-+ #0]*[\d.*]*(hh|h|ll|l|z|j|t)?[a-zA-Z%]|\\x[0-9a-fA-F]+|\\[0-7]{1,3}|\\."


def change_text(place):
    """Another letter in one word; where there is no word, one character less."""
    text = place.text()
    if place.kind != K.STRING_LITERAL or place.source.endswith(UNREAD_TEXT, 0, place.start) or \
            not re.fullmatch(r'"([^"\\\n]|\\.)+"', text):
        return
    masked = re.sub(NOT_WORDS, lambda found: "\0" * len(found.group()), text)
    words = [found for found in re.finditer(r"[A-Za-z]+", masked)]
    if words:
        word = words[pick(place, len(words))]
        at = word.start() + pick(place, len(word.group()))
        other = {"z": "y", "Z": "Y"}.get(text[at], chr(ord(text[at]) + 1))
        yield Edit(place.start, place.end, text[:at] + other + text[at + 1:])
    elif masked[-2] != "\0":
        yield Edit(place.start, place.end, text[:-2] + '"')


def change_level(place):
    if not is_enumerator(place.node) or not place.node.spelling.startswith("LOG_LEVEL_"):
        return
    other = neighbour_enumerator(place.node.referenced)
    if other and place.text() == place.node.spelling:
        yield Edit(place.start, place.end, other)


# Name, share of a sample, function
OPERATORS = [
    ("statement left out", 3, leave_out),
    ("check left out", 2, leave_out_check),
    ("flag not set", 2, leave_out_flag),
    ("neighbours exchanged", 1, exchange),
    ("early return", 2, return_early),
    ("condition turned", 2, turn),
    ("condition off by one", 2, off_by_one),
    ("and for or", 1, join_otherwise),
    ("condition left out in part", 1, leave_out_part),
    ("constant", 2, change_constant),
    ("enumerator", 1, change_enumerator),
    ("arguments exchanged", 1, exchange_arguments),
    ("lock", 1, move_lock),
    ("text", 1, change_text),
    ("level", 1, change_level),
]

# Where a fault would be one of wording for people, or where the machine cannot see it: operator, path
LEFT_OUT = [
    ("text", r"^tools/.*/(CommandLine|Manual)\w*\.(cpp|h)$"),  # the help
]
UNREAD_TEXT = b" NAME = "  # of a message class, in a list that is for debuggers
