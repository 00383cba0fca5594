"""Shows the values and exceptions of foundation::json in gdb, version 13 or later.

    (gdb) print order
    $1 = JSON object of length 2 = {["id"] = 7, ["lines"] = JSON array of length 1 = {"tea"}}
    (gdb) json order
    {"id": 7, "lines": ["tea"]}
    (gdb) print order["lines"][0]
    $2 = "tea"

gdb loads this file by itself along with the installed shared library; otherwise `source` it. It
needs foundation_json_values.py, which is installed in share/foundation_json.

gdb runs all files like this one in a single namespace; hence the long names.
"""

import pathlib
import sys
import types

import gdb
import gdb.printing
import gdb.xmethod


def foundation_json_load_values():
    """By its path, so that nothing else is found under its name, and without a trace on the disk."""
    folder = pathlib.Path(__file__).resolve().parent
    for parent in folder.parents:
        # The copy that gdb loads by itself is in share/gdb/auto-load, below that of the library.
        if parent.parts[-2:] == ("gdb", "auto-load"):
            folder = parent.parent.parent / "foundation_json"
    file = folder / "foundation_json_values.py"
    module = types.ModuleType("foundation_json_values")
    exec(compile(file.read_text(encoding="utf-8"), str(file), "exec"), module.__dict__)
    return module


foundation_json_values = foundation_json_load_values()


class FoundationJsonProgram:
    """The memory of the program, and how a Value lies in it."""

    def __init__(self, any_type, value_type=None):
        pointer = any_type.pointer()
        self.type = value_type
        word = pointer.sizeof
        little = int(gdb.Value((1).to_bytes(word, "little"), pointer)) == 1
        layout = value_type and self.layout(value_type)
        self.has_names = layout is not None
        self.memory = foundation_json_values.Memory(
            self.read, word, "little" if little else "big", layout
        )

    @classmethod
    def of(cls, value):
        value_type = value.type.strip_typedefs().unqualified()
        return cls(value_type, value_type)

    @staticmethod
    def read(address, length):
        try:
            return gdb.selected_inferior().read_memory(address, length).tobytes()
        except (gdb.error, OverflowError):
            raise foundation_json_values.Unreadable from None

    @staticmethod
    def layout(value_type):
        """None if the debug information only declares the type or that of its content."""
        try:
            # A union without a name holds the variant.
            union = next(field for field in value_type.fields() if not field.name)
            variant = union.type["variant_"]
            which, storage = variant.type["which_"], variant.type["storage_"]
        except (KeyError, TypeError, StopIteration):
            return None
        offset = union.bitpos + variant.bitpos
        return foundation_json_values.Layout(
            value_type.sizeof,
            (offset + which.bitpos) // 8,
            which.type.sizeof,
            (offset + storage.bitpos) // 8,
        )

    def held(self, value):
        """What a value holds. By name where possible, since a value need not lie in memory, as when
        gdb has made a copy."""
        try:
            if self.has_names:
                value.fetch_lazy()
                variant = value["variant_"]
                return self.memory.held(int(variant["which_"]), self.data(variant["storage_"]))
            foundation_json_values.check(value.address is not None)
            return self.memory.held_at(int(value.address))
        except gdb.error:
            raise foundation_json_values.Unreadable from None

    @staticmethod
    def data(storage):
        """The bytes of a variant's storage, an array somewhere in a union."""
        while storage.type.strip_typedefs().code != gdb.TYPE_CODE_ARRAY:
            storage = storage[storage.type.strip_typedefs().fields()[0]]
        return bytes(int(storage[i]) & 0xFF for i in range(storage.type.sizeof))

    def value_at(self, address):
        return gdb.Value(address).cast(self.type.pointer()).dereference()

    @staticmethod
    def string(text):
        """For gdb to show as it does any string."""
        pointer = gdb.Value(text.address).cast(gdb.lookup_type("char").pointer())
        return pointer.lazy_string(length=text.length)

    def writer(self):
        options = gdb.print_options()
        charset = "utf-8" if gdb.host_charset().upper() == "UTF-8" else "ascii"
        limit = options["max_elements"] or sys.maxsize
        max_depth = options["max_depth"] if options["max_depth"] >= 0 else sys.maxsize
        return foundation_json_values.Writer(self.memory, limit, limit, max_depth, charset)


class FoundationJsonText:
    """Shows a value that has no children."""

    def __init__(self, text):
        self.text = text

    def to_string(self):
        return self.text


class FoundationJsonString(FoundationJsonText):
    def display_hint(self):
        return "string"


class FoundationJsonContainer:
    """Shows an array or object that is not empty. gdb prints the children, within its limits."""

    # How many levels gdb may go down where it has no limit; its own stack ends some time after.
    MAX_DEPTH = 100

    # By the address of a value or name that was shown within values: the addresses of the
    # containers that it lies in. One that contains itself, as only broken memory has it, is entered
    # once.
    around = {}

    def __init__(self, program, held, outer):
        self.program, self.held, self.outer = program, held, outer

    @classmethod
    def containers_around(cls, value):
        address = value.address and int(value.address)
        if address not in cls.around:
            # Not within the values shown last. They are of no use any more.
            cls.around.clear()
        return cls.around.get(address, ())

    @classmethod
    def is_too_deep(cls, outer):
        limit = gdb.print_options()["max_depth"]
        return len(outer) >= cls.MAX_DEPTH and not 0 <= limit <= cls.MAX_DEPTH

    def to_string(self):
        return foundation_json_values.summary(self.held)

    def display_hint(self):
        return "array" if self.held.kind == "JSON array" else "map"

    def children(self):
        unreadable = foundation_json_values.UNREADABLE
        count = 0
        try:
            is_array = self.held.kind == "JSON array"
            for child in self.values() if is_array else self.names_and_values():
                yield f"[{count}]", child
                count += 1
        except foundation_json_values.Unreadable:
            # What follows is likely not there either. A map has children in pairs.
            yield f"[{count}]", unreadable
            if self.display_hint() == "map":
                yield f"[{count + 1}]", unreadable

    def values(self):
        for address in self.held.content.elements:
            self.program.memory.read(address, self.program.memory.layout.size)
            yield self.child(address)

    def names_and_values(self):
        for name, address in self.held.content.members:
            self.enclose(name.address)
            yield self.program.string(name)
            yield self.child(address)

    def child(self, address):
        self.enclose(address)
        return self.program.value_at(address)

    def enclose(self, address):
        self.around[address] = *self.outer, self.held.content.address


def foundation_json_value_printer(value):
    unreadable = foundation_json_values.UNREADABLE
    program = FoundationJsonProgram.of(value)
    try:
        held = program.held(value)
    except foundation_json_values.Unreadable:
        return FoundationJsonText(unreadable)
    if held.content is foundation_json_values.Unreadable:
        return FoundationJsonText(f"{held.kind} {unreadable}")
    if held.kind == "JSON string":
        return FoundationJsonString(program.string(held.content))
    if held.kind not in ("JSON array", "JSON object"):
        return FoundationJsonText(foundation_json_values.scalar(held))

    # An IDE shows no text beside children; there is one for what has none.
    text = foundation_json_values.summary(held)
    outer = FoundationJsonContainer.containers_around(value)
    if held.content.address in outer:
        return FoundationJsonText(f"{held.kind} {unreadable}")
    if not held.content.length:
        return FoundationJsonText(text)
    if FoundationJsonContainer.is_too_deep(outer):
        return FoundationJsonText(text + " = {...}")
    return FoundationJsonContainer(program, held, outer)


def foundation_json_name_printer(value):
    """Of the name of a member, given out as a child. An IDE shows arrays of characters by their
    length; it shows a name as text like this."""
    if value.address is None or int(value.address) not in FoundationJsonContainer.around:
        return None
    return FoundationJsonString(value.lazy_string(length=value.type.sizeof))


class FoundationJsonException:
    """Shows an exception. The limit of its message is not known before the text is asked for."""

    def __init__(self, exception):
        self.exception = exception

    def to_string(self):
        writer = FoundationJsonProgram(self.exception.type).writer()
        try:
            foundation_json_values.check(self.exception.address is not None)
            return writer.exception_at(int(self.exception.address))
        except (gdb.error, foundation_json_values.Unreadable):
            return f"ParserException {foundation_json_values.UNREADABLE}"


def foundation_json_referred(value):
    """What a reference refers to, and the name of its class."""
    if value.type.code in (gdb.TYPE_CODE_REF, gdb.TYPE_CODE_RVALUE_REF):
        value = value.referenced_value()
    return value, value.type.strip_typedefs().unqualified().name


class FoundationJsonPrinters(gdb.printing.PrettyPrinter):
    def __init__(self):
        super().__init__("foundation_json")

    def __call__(self, value):
        """The printer of a value or of what a reference refers to; None if it is another class."""
        try:
            value, name = foundation_json_referred(value)
            if name == "foundation::json::Value":
                return foundation_json_value_printer(value)
            if name == "foundation::json::ParserException":
                return FoundationJsonException(value)
            if value.type.code == gdb.TYPE_CODE_ARRAY and value.type.target().name == "char":
                return foundation_json_name_printer(value)
        except gdb.error:
            # gdb itself says what is wrong, such as a reference to no memory.
            pass
        return None


class FoundationJsonCommand(gdb.Command):
    """Show a value of foundation::json as one text much like JSON.
Usage: json EXPRESSION

"set print elements" limits the number of values, at all depths together, and the length of each
string; "set print max-depth" limits the depth, which is a hundred levels at most."""

    def __init__(self):
        super().__init__("json", gdb.COMMAND_DATA, gdb.COMPLETE_EXPRESSION)

    def invoke(self, argument, _from_tty):
        if not argument:
            raise gdb.GdbError("Argument required (the expression of a value).")
        try:
            value, name = foundation_json_referred(gdb.parse_and_eval(argument))
        except gdb.error as error:
            raise gdb.GdbError(str(error)) from None
        if name != "foundation::json::Value":
            raise gdb.GdbError("This is no foundation::json::Value.")
        program = FoundationJsonProgram.of(value)
        try:
            text = program.writer().value(program.held(value))
        except foundation_json_values.Unreadable:
            text = foundation_json_values.UNREADABLE
        gdb.write(text + "\n")


class FoundationJsonLookup(gdb.xmethod.XMethodWorker):
    """operator[] of a value, without running the program."""

    def __init__(self, key_type):
        self.key_type = key_type

    def get_arg_types(self):
        return self.key_type

    def get_result_type(self, value, _key):
        return value.type.target() if value.type.code == gdb.TYPE_CODE_PTR else value.type

    def __call__(self, value, key):
        if value.type.code == gdb.TYPE_CODE_PTR:
            value = value.dereference()
        program = FoundationJsonProgram.of(value)
        try:
            held, wanted = program.held(value), self.key(program, key)
            return program.value_at(program.memory.child(held, wanted))
        except (gdb.error, foundation_json_values.Unreadable):
            # This says more than an exception, and the null pointer ends what is done with it.
            gdb.write(f"There is no such element or member: {self.text(key)}\n", gdb.STDERR)
            return program.value_at(0)

    @staticmethod
    def text(key):
        try:
            return str(key)
        except gdb.error:
            return foundation_json_values.UNREADABLE

    @staticmethod
    def key(program, key):
        """An index, or the bytes of a name."""
        key, name = foundation_json_referred(key)
        code = key.type.strip_typedefs().code
        if code in (gdb.TYPE_CODE_INT, gdb.TYPE_CODE_BOOL, gdb.TYPE_CODE_ENUM, gdb.TYPE_CODE_CHAR):
            return int(key)
        if code in (gdb.TYPE_CODE_PTR, gdb.TYPE_CODE_ARRAY):
            return key.string("latin-1").encode("latin-1")
        memory = program.memory
        if name == "foundation::json::Value":
            return memory.key(program.held(key))
        return memory.bytes(memory.text_at(int(key.address)))


class FoundationJsonMethods(gdb.xmethod.XMethodMatcher):
    # More than the program has, so that whatever number is an index fits one of them.
    INTEGERS = "int", "unsigned", "long", "unsigned long", "long long", "unsigned long long"
    CLASSES = "std::string", "foundation::json::Value"

    def __init__(self):
        super().__init__("foundation_json")
        self.methods = [gdb.xmethod.XMethod("operator[]")]

    def match(self, class_type, method_name):
        if class_type.strip_typedefs().unqualified().name != "foundation::json::Value":
            return None
        if method_name != "operator[]" or not self.methods[0].enabled:
            return None
        return [FoundationJsonLookup(key_type) for key_type in self.key_types()]

    def key_types(self):
        yield gdb.lookup_type("char").const().pointer()
        for name in self.INTEGERS:
            yield gdb.lookup_type(name)
        for name in self.CLASSES:
            try:
                yield gdb.lookup_type(name).const().reference()
            except gdb.error:
                # Unknown to the program: then it has no such key either.
                pass


# Older versions of gdb, which do not tell their limits, show values as they are.
if hasattr(gdb, "print_options"):
    gdb.printing.register_pretty_printer(
        gdb.current_objfile(), FoundationJsonPrinters(), replace=True
    )
    gdb.xmethod.register_xmethod_matcher(
        gdb.current_objfile(), FoundationJsonMethods(), replace=True
    )
    gdb.events.cont.connect(lambda _: FoundationJsonContainer.around.clear())
    FoundationJsonCommand()
