"""Shows the values and exceptions of foundation::json in gdb, version 13 or later.

    (gdb) print order
    $1 = JSON object {"id": 7, "lines": ["tea", 2.5], "paid": false}

gdb loads this file by itself along with the installed shared library; otherwise `source` it.

The debug information of a program seldom describes all that is needed: a program that makes no
objects itself knows nothing of std::map; g++ describes a class with virtual functions, and clang++
any class with constructors, only where those are compiled. So what lies in memory is read word by
word, as libstdc++ lays it out. It may be garbage, in a variable not yet set as in memory
overwritten: all lengths and links are checked, and each container is entered once.

gdb runs all files like this one in a single namespace; hence the long names.
"""

import json
import struct

import gdb
import gdb.printing


class FoundationJsonMemory:
    """The memory of the debugged program. What cannot be right raises gdb.MemoryError."""

    def __init__(self, pointer_type):
        self.word = pointer_type.sizeof
        little = int(gdb.Value((1).to_bytes(self.word, "little"), pointer_type)) == 1
        self.order = "<" if little else ">"

    def unpack(self, codes, data):
        return struct.unpack_from(self.order + codes, data)

    def words(self, count, data):
        return self.unpack(str(count) + {4: "I", 8: "Q"}[self.word], data)

    def read(self, address, length):
        self.check(0 <= address and address + length <= 1 << 8 * self.word)
        return gdb.selected_inferior().read_memory(address, length).tobytes()

    def words_at(self, address, count):
        return self.words(count, self.read(address, count * self.word))

    @staticmethod
    def check(right):
        if not right:
            raise gdb.MemoryError("no JSON value here")


class FoundationJsonWriter:
    """Writes values as text much like JSON, within the limits of the `print` under way."""

    # In the order in which the variant counts them.
    KINDS = (
        "undefined", "JSON null", "JSON boolean", "JSON number", "JSON string",
        "JSON array", "JSON object", "float", "int64", "uint64",
    )  # fmt: skip
    # What they hold, in the codes of struct.
    SCALARS = {"JSON boolean": "B", "JSON number": "d", "float": "f", "int64": "q", "uint64": "Q"}
    CONTAINERS = {"JSON array", "JSON object"}

    UNREADABLE = "<unreadable>"
    # How deep it goes whatever gdb allows; Python's own stack ends soon after.
    MAX_DEPTH = 100

    def __init__(self, value_type):
        options = gdb.print_options()
        self.limit = options["max_elements"]
        self.max_depth = min(options["max_depth"], self.MAX_DEPTH)
        self.charset = "utf-8" if gdb.host_charset().upper() == "UTF-8" else "ascii"
        self.type = value_type.strip_typedefs().unqualified()
        self.memory = FoundationJsonMemory(self.type.pointer())
        self.string_size = 2 * self.memory.word + 16
        self.size = self.type.sizeof if self.type.fields() else self.memory.word + self.string_size
        self.written = 0
        self.entered = set()

    # ---- What a value holds ----------------------------------------------------------------

    def kind_and_content(self, value):
        """The content is the bytes of the variant's storage, which has the size of a string."""
        memory = self.memory
        if self.type.fields():
            # By name, since a value need not lie in memory, as when gdb has made a copy.
            which = int(value["variant_"]["which_"])
            buffer = value["variant_"]["storage_"]["data_"]["buf"]
            content = bytes(int(buffer[i]) & 0xFF for i in range(buffer.type.sizeof))
        else:
            memory.check(value.address is not None)
            data = memory.read(int(value.address), self.size)
            (which,) = memory.unpack("i", data)
            content = data[-self.string_size :]
        if not 0 <= which < len(self.KINDS) or len(content) != self.string_size:
            return self.UNREADABLE, b""
        return self.KINDS[which], content

    def children(self, kind, content):
        """Pairs of an index, or a name in quotes, and a value."""
        (container,) = self.memory.words(1, content)
        self.memory.check(container not in self.entered)
        self.entered.add(container)
        return self.elements(container) if kind == "JSON array" else self.members(container)

    def elements(self, vector):
        begin, end, capacity = self.memory.words_at(vector, 3)
        self.memory.check(begin <= end <= capacity and (end - begin) % self.size == 0)
        for index, address in enumerate(range(begin, end, self.size)):
            yield str(index), self.value_at(address)

    def members(self, tree):
        """Goes through the tree in order, and into no node twice."""
        memory = self.memory
        _, _, root, _, _, count = memory.words_at(tree, 6)
        node, parents, visited = root, [], set()
        while node or parents:
            while node:
                memory.check(node not in visited and len(visited) < count)
                visited.add(node)
                parents.append(node)
                _, _, node, _ = memory.words_at(node, 4)
            node = parents.pop()
            name = node + 4 * memory.word
            text = self.string(*memory.words_at(name, 2))
            yield text, self.value_at(name + self.string_size)
            _, _, _, node = memory.words_at(node, 4)
        memory.check(len(visited) == count)

    def value_at(self, address):
        return gdb.Value(address).cast(self.type.pointer()).dereference()

    # ---- Its text --------------------------------------------------------------------------

    def value(self, value):
        """A value by itself, with its kind."""
        kind, content = self.kind_and_content(value)
        return f"{kind} {self.text(kind, content, 0)}".rstrip()

    def child(self, value, depth):
        """A value within another. The kinds that JSON has show in their text."""
        kind, content = self.kind_and_content(value)
        text = self.text(kind, content, depth)
        return text or "null" if kind.startswith("JSON") else f"{kind} {text}".rstrip()

    def text(self, kind, content, depth):
        try:
            if kind in self.SCALARS:
                return self.scalar(kind, *self.memory.unpack(self.SCALARS[kind], content))
            if kind == "JSON string":
                return self.string(*self.memory.words(2, content))
        except gdb.error:
            return self.UNREADABLE
        if kind == "JSON array":
            return f"[{self.list(kind, content, depth)}]"
        if kind == "JSON object":
            return f"{{{self.list(kind, content, depth)}}}"
        return ""

    def list(self, kind, content, depth):
        if depth >= self.max_depth:
            return "..."
        texts = []
        try:
            for name, value in self.children(kind, content):
                if self.written >= self.limit:
                    return ", ".join(texts) + "..."
                self.written += 1
                text = self.child(value, depth + 1)
                texts.append(f"{name}: {text}" if kind == "JSON object" else text)
        except gdb.error:
            # What follows is likely not there either.
            texts.append(self.UNREADABLE)
        return ", ".join(texts)

    def string(self, address, length):
        """In quotes. Text of the terminal's charset appears as it is, other bytes as \\xff."""
        data = self.memory.read(address, min(length, self.limit))
        # A character stands for a byte here: those that JSON escapes are the same everywhere.
        text = json.dumps(data.decode("latin-1"), ensure_ascii=False)
        text = text.encode("latin-1").decode(self.charset, errors="backslashreplace")
        return text + ("..." if len(data) < length else "")

    def scalar(self, kind, content):
        if kind == "JSON boolean":
            return {0: "false", 1: "true"}.get(content, self.UNREADABLE)
        if kind == "float":
            # With the fewest digits that still mean this float.
            numbers = (float(f"{content:.{digits}g}") for digits in range(6, 10))
            content = next((n for n in numbers if self.as_float(n) == content), content)
        return repr(content).removesuffix(".0")

    @staticmethod
    def as_float(number):
        return struct.unpack("f", struct.pack("f", number))[0]


class FoundationJsonValue:
    def __init__(self, value):
        self.value = value
        self.told = False

    def to_string(self):
        self.told = True
        try:
            return FoundationJsonWriter(self.value.type).value(self.value)
        except gdb.error:
            return FoundationJsonWriter.UNREADABLE


class FoundationJsonContainer(FoundationJsonValue):
    """An IDE asks for the children, to show a tree. `print` asks for the text and then the
    children, but the text has them all."""

    def children(self):
        if self.told and self.printing():
            return
        writer = FoundationJsonWriter(self.value.type)
        for name, value in writer.children(*writer.kind_and_content(self.value)):
            yield f"[{name}]", value

    @staticmethod
    def printing():
        """Whether this is part of a `print` or the like: that goes by a copy of gdb's settings,
        which a change now does not reach."""
        before = gdb.print_options()
        with gdb.with_parameter("print nibbles", not before["nibbles"]):
            return gdb.print_options() == before


class FoundationJsonParserException:
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

    def __init__(self, exception):
        self.exception = exception

    def to_string(self):
        writer = FoundationJsonWriter(self.exception.type)
        memory = writer.memory
        try:
            memory.check(self.exception.address is not None)
            address = int(self.exception.address)
            # The table of virtual functions, the message, the code and the position.
            _, message, _, byte, line, column = memory.words_at(address, 6)
            (code,) = memory.unpack("i", memory.read(address + 2 * memory.word, 4))
            memory.check(0 <= code < len(self.PARSE_RESULTS))
            # The message is shared by copies of the exception; its length precedes its text.
            (length,) = memory.words_at(message - 3 * memory.word, 1)
            text = writer.string(message, length)
            name = self.PARSE_RESULTS[code]
            return f"ParserException {name} at byte {byte}, line {line}, column {column}: {text}"
        except gdb.error:
            return f"ParserException {writer.UNREADABLE}"


class FoundationJsonPrinters(gdb.printing.PrettyPrinter):
    def __init__(self):
        super().__init__("foundation_json")

    def __call__(self, value):
        """The printer of a value or of what a reference refers to; None if it is another class."""
        if value.type.code in (gdb.TYPE_CODE_REF, gdb.TYPE_CODE_RVALUE_REF):
            value = value.referenced_value()
        name = value.type.strip_typedefs().unqualified().name
        if name == "foundation::json::ParserException":
            return FoundationJsonParserException(value)
        if name == "foundation::json::Value":
            return self.value_printer(value)
        return None

    @staticmethod
    def value_printer(value):
        """One with children only where there may be some: an IDE shows no text beside those."""
        try:
            kind, _ = FoundationJsonWriter(value.type).kind_and_content(value)
        except gdb.error:
            kind = FoundationJsonWriter.UNREADABLE
        if kind in FoundationJsonWriter.CONTAINERS:
            return FoundationJsonContainer(value)
        return FoundationJsonValue(value)


# Older versions of gdb, which do not tell their limits, show values as they are.
if hasattr(gdb, "print_options"):
    gdb.printing.register_pretty_printer(
        gdb.current_objfile(), FoundationJsonPrinters(), replace=True
    )
