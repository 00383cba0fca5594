"""Reads the values and exceptions of foundation::json in the memory of a program, for the scripts
that show them in gdb and in lldb.

The debug information of a program seldom describes all that is needed: a program that makes no
objects itself knows nothing of std::map; g++ describes a class with virtual functions, and clang++
any class with constructors, only where those are compiled. The printers of the standard library are
of no use then, and they trust what they read. So the containers are read word by word here, as
libstdc++ lays them out. Memory may be garbage, in a variable not yet set as in memory overwritten:
all lengths and links are checked.
"""

import collections
import json
import math
import struct

UNREADABLE = "<unreadable>"

# What a Value may hold, in the order in which the variant counts them.
KINDS = (
    "undefined", "JSON null", "JSON boolean", "JSON number", "JSON string",
    "JSON array", "JSON object", "float", "int64", "uint64",
)  # fmt: skip
# How they lie in the variant's storage, in the codes of struct.
SCALARS = {"JSON boolean": "B", "JSON number": "d", "float": "f", "int64": "q", "uint64": "Q"}

# In the order of their numbers.
PARSE_RESULTS = (
    "NO_PARSE_ERROR", "NULL_MISMATCH", "BOOLEAN_MISMATCH", "EMPTY_INPUT",
    "INCOMPLETE_ESCAPE_SEQUENCE", "INVALID_ESCAPE_SEQUENCE", "INVALID_UNICODE_ESCAPE",
    "UNESCAPED_QUOTE", "MISSING_LEADING_QUOTE", "MISSING_TRAILING_QUOTE",
    "MISSING_QUANTITY_AFTER_SIGN", "MISSING_LEADING_DIGIT", "INVALID_FRACTION",
    "INVALID_EXPONENT", "MISSING_ARRAY_OPEN", "MISSING_ARRAY_CLOSE", "MISSING_OBJECT_OPEN",
    "MISSING_OBJECT_CLOSE", "MISSING_NAME_SEPARATOR", "UNEXPECTED_END_OF_INPUT",
    "INVALID_INTEGER_ARRAY_VALUE",
)  # fmt: skip


class Unreadable(Exception):
    """There is no such memory, or what is there cannot be right."""


def check(right):
    if not right:
        raise Unreadable


# Where the bytes of a string lie, without the zero at their end.
Text = collections.namedtuple("Text", "address length")

# What a value holds: its kind, and `content`, which is a number for the kinds in SCALARS, a Text
# for a string, an Array, an Object, and None for undefined and null.
Held = collections.namedtuple("Held", "kind content")

# An array: where it lies, how many elements it has, and their addresses.
Array = collections.namedtuple("Array", "address length elements")

# An object: where it lies, how many members it says it has, and an iterable of pairs of a Text and
# the address of a value, which raises Unreadable where the tree ends too early.
Object = collections.namedtuple("Object", "address length members")

# How a Value lies in memory: its size, the offset and size of the number of its kind, and the
# offset of its content.
Layout = collections.namedtuple("Layout", "size which which_size storage")


class Memory:
    """The memory of a program that is debugged.

    read(address, length) returns bytes, or raises Unreadable. The layout is taken from the debug
    information; where that does not describe it, it is as Boost's variant is laid out: the number
    of the kind, then what takes the most space, a string.
    """

    def __init__(self, read, word, byte_order, layout=None):
        self.word = word
        self.order = {"little": "<", "big": ">"}[byte_order]
        self.string_size = 2 * word + 16
        self.layout = layout or Layout(word + self.string_size, 0, 4, word)
        self.reader = read

    # ---- Words ---------------------------------------------------------------------------------

    def read(self, address, length):
        check(0 <= address and address + length <= 1 << 8 * self.word)
        return self.reader(address, length)

    def unpack(self, codes, data):
        check(len(data) >= struct.calcsize(self.order + codes))
        return struct.unpack_from(self.order + codes, data)

    def words(self, count, data):
        return self.unpack(str(count) + {4: "I", 8: "Q"}[self.word], data)

    def words_at(self, address, count):
        return self.words(count, self.read(address, count * self.word))

    # ---- Values --------------------------------------------------------------------------------

    def held_at(self, address):
        """What the value at an address holds."""
        return self.held_in(self.read(address, self.layout.size))

    def held_in(self, data):
        """What the value holds that consists of these bytes."""
        layout = self.layout
        code = {1: "b", 2: "h", 4: "i", 8: "q"}[layout.which_size]
        (which,) = self.unpack(code, data[layout.which :])
        return self.held(which, data[layout.storage :])

    def held(self, which, storage):
        """What a value holds, by the number of its kind and the bytes of its content."""
        check(0 <= which < len(KINDS))
        kind = KINDS[which]
        try:
            return Held(kind, self.content(kind, storage))
        except Unreadable:
            return Held(kind, Unreadable)

    def content(self, kind, storage):
        if kind in SCALARS:
            (number,) = self.unpack(SCALARS[kind], storage)
            check(kind != "JSON boolean" or number <= 1)
            return number
        if kind == "JSON string":
            return self.text(storage)
        if kind == "JSON array":
            return self.array(*self.words(1, storage))
        if kind == "JSON object":
            return self.object(*self.words(1, storage))
        return None

    def text(self, data):
        """Of the bytes of a std::string. It ends with a zero, which is a good test."""
        address, length = self.words(2, data)
        check(self.read(address + length, 1) == b"\0")
        if length:
            self.read(address, 1)
        return Text(address, length)

    def text_at(self, address):
        return self.text(self.read(address, self.string_size))

    def array(self, address):
        size = self.layout.size
        begin, end, capacity = self.words_at(address, 3)
        check(begin <= end <= capacity and (end - begin) % size == 0)
        elements = range(begin, end, size)
        for element in (elements[:1], elements[-1:]):
            for address_of_one in element:
                self.read(address_of_one, size)
        return Array(address, len(elements), elements)

    def object(self, address):
        word = self.word
        header = address + word
        _, root, leftmost, rightmost, count = self.words_at(header, 5)
        node = 4 * word + self.string_size + self.layout.size
        check((root == 0) == (count == 0) and count <= (1 << 8 * word) // node)
        if root:
            _, parent, _, _ = self.words_at(root, 4)
            check(parent == header)
            self.member(leftmost)
            self.member(rightmost)
        return Object(address, count, Members(self, root, count))

    def member(self, node):
        """The name and the address of the value in a node of a tree."""
        name = node + 4 * self.word
        value = name + self.string_size
        self.read(value, self.layout.size)
        return self.text_at(name), value

    # ---- Elements and members by their keys -----------------------------------------------------

    def bytes(self, text):
        return self.read(text.address, text.length)

    def key(self, held):
        """An index or the bytes of a name, as a value that is used as a key stands for one."""
        check(held.content is not Unreadable)
        if held.kind == "JSON string":
            return self.bytes(held.content)
        check(held.kind == "JSON number" and math.isfinite(held.content))
        return int(held.content)

    def child(self, held, key):
        """The address of an element or a member."""
        check(held.content is not Unreadable)
        if held.kind == "JSON object" and isinstance(key, bytes):
            return held.content.members.find(key)
        check(held.kind == "JSON array" and isinstance(key, int) and 0 <= key < held.content.length)
        return held.content.elements[key]

    # ---- Exceptions ----------------------------------------------------------------------------

    def exception_at(self, address):
        """The name of the code, the position in bytes, the line, the column and the message."""
        # The table of virtual functions, the message, the code and the position.
        _, message, _, byte, line, column = self.words_at(address, 6)
        (code,) = self.unpack("i", self.read(address + 2 * self.word, 4))
        check(0 <= code < len(PARSE_RESULTS))
        # The message is shared by copies of the exception; its length precedes its text.
        (length,) = self.words_at(message - 3 * self.word, 1)
        return PARSE_RESULTS[code], byte, line, column, Text(message, length)


class Members:
    """Goes through a tree in order, into no node twice and no more than there are said to be."""

    def __init__(self, memory, root, count):
        self.memory, self.root, self.count = memory, root, count

    def __iter__(self):
        node, parents, visited = self.root, [], set()
        while node or parents:
            while node:
                check(node not in visited and len(visited) < self.count)
                visited.add(node)
                parents.append(node)
                _, _, node, _ = self.memory.words_at(node, 4)
            node = parents.pop()
            yield self.memory.member(node)
            _, _, _, node = self.memory.words_at(node, 4)
        check(len(visited) == self.count)

    def find(self, name):
        """The address of the value with a name."""
        node = self.root
        # A red-black tree is at most twice as deep as a full one.
        for _ in range(2 * self.count.bit_length()):
            text, value = self.memory.member(node)
            found = self.memory.bytes(text)
            if found == name:
                return value
            _, _, left, right = self.memory.words_at(node, 4)
            node = left if name < found else right
        raise Unreadable


class Writer:
    """Writes values as text much like JSON, and parts of them.

    At most `limit` elements and members at all depths together, `text_limit` bytes of each string,
    and not deeper than `max_depth`. Text of the charset appears as it is.
    """

    # How deep it goes whatever is allowed; Python's own stack ends soon after.
    MAX_DEPTH = 100

    def __init__(self, memory, limit, text_limit, max_depth, charset):
        self.memory, self.charset = memory, charset
        self.limit, self.text_limit = limit, text_limit
        self.max_depth = min(max_depth, self.MAX_DEPTH)
        self.written = 0
        self.entered = set()

    def value(self, held, depth=0):
        if held.content is Unreadable:
            return f"{held.kind} {UNREADABLE}"
        if held.kind == "JSON string":
            return self.string(held.content)
        if held.kind == "JSON array":
            return f"[{self.list(self.elements, held.content, depth)}]"
        if held.kind == "JSON object":
            return f"{{{self.list(self.members, held.content, depth)}}}"
        return scalar(held)

    def value_at(self, address, depth):
        try:
            return self.value(self.memory.held_at(address), depth)
        except Unreadable:
            return UNREADABLE

    def list(self, items, container, depth):
        if depth >= self.max_depth:
            return "..." if container.length else ""
        texts = []
        try:
            check(container.address not in self.entered)
            self.entered.add(container.address)
            for name, address in items(container):
                if self.written >= self.limit:
                    return ", ".join(texts) + "..."
                self.written += 1
                texts.append(name + self.value_at(address, depth + 1))
        except Unreadable:
            # What follows is likely not there either.
            texts.append(UNREADABLE)
        return ", ".join(texts)

    @staticmethod
    def elements(array):
        return (("", address) for address in array.elements)

    def members(self, members):
        return ((self.string(name) + ": ", address) for name, address in members.members)

    def exception_at(self, address):
        name, byte, line, column, message = self.memory.exception_at(address)
        position = f"at byte {byte}, line {line}, column {column}"
        return f"ParserException {name} {position}: {self.string(message)}"

    def string(self, text):
        """In quotes, as JSON has it, but for bytes that are no text, which appear as \\xff."""
        data = self.memory.read(text.address, min(text.length, self.text_limit))
        return quoted(data, self.charset) + ("..." if len(data) < text.length else "")


def quoted(data, charset):
    # A character stands for a byte here: those that JSON escapes are the same everywhere.
    text = json.dumps(data.decode("latin-1"), ensure_ascii=False)
    return text.encode("latin-1").decode(charset, errors="backslashreplace")


def scalar(held):
    """The text of what is neither a string nor a container. Kinds that JSON lacks are named."""
    kind, number = held
    if number is Unreadable:
        return f"{kind} {UNREADABLE}"
    if kind == "JSON boolean":
        return ("false", "true")[number]
    if number is None:
        return {"JSON null": "null"}.get(kind, kind)
    if kind == "float":
        number = shortest_float(number)
    text = repr(number).removesuffix(".0")
    return text if kind == "JSON number" else f"{kind} {text}"


def shortest_float(number):
    """With the fewest digits that still mean this float."""
    numbers = (float(f"{number:.{digits}g}") for digits in range(6, 10))
    return next((short for short in numbers if as_float(short) == number), number)


def as_float(number):
    try:
        return struct.unpack("f", struct.pack("f", number))[0]
    except OverflowError:
        return None


def summary(held):
    """Of an array or object."""
    text = UNREADABLE if held.content is Unreadable else f"of length {held.content.length}"
    return f"{held.kind} {text}"
