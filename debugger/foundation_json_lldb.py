"""Shows the values and exceptions of foundation::json in lldb.

    (lldb) command script import /usr/share/foundation_json/foundation_json_lldb.py
    (lldb) frame variable order
    (foundation::json::Value) order = JSON object of length 2 {
      ["id"] = 7
      ["lines"] = JSON array of length 1 {
        [0] = "tea"
      }
    }
    (lldb) json order
    {"id": 7, "lines": ["tea"]}
    (lldb) frame variable order.lines[0]
    (foundation::json::Value) order.lines[0] = "tea"

It needs foundation_json_values.py, which is installed beside it.
"""

import importlib.util
import pathlib
import sys

import lldb


def load_values():
    """By its path, so that nothing else can be found under its name."""
    file = pathlib.Path(__file__).resolve().parent / "foundation_json_values.py"
    spec = importlib.util.spec_from_file_location("foundation_json_values", file)
    module = importlib.util.module_from_spec(spec)
    spec.loader.exec_module(module)
    return module


values = load_values()
VALUE = "foundation::json::Value"
EXCEPTION = "foundation::json::ParserException"
CATEGORY = "foundation_json"
# Stands for a value where the debug information only declares the class. The debugger keeps types
# whose names begin like this.
OPAQUE = "$foundation_json_value"
# How many levels are shown, where the debugger has no limit; its own stack ends some time after.
MAX_DEPTH = 100


class Program:
    """The memory of the program that a value belongs to, and how a Value lies in it."""

    def __init__(self, value, layout=None):
        self.target, self.process = value.GetTarget(), value.GetProcess()
        little = self.target.GetByteOrder() == lldb.eByteOrderLittle
        self.memory = values.Memory(
            self.read, self.target.GetAddressByteSize(), "little" if little else "big", layout
        )

    @classmethod
    def of(cls, value):
        return cls(value, layout_of(type_of(value)))

    def read(self, address, length):
        if not length:
            return b""
        error = lldb.SBError()
        data = self.process.ReadMemory(address, length, error)
        values.check(error.Success() and data is not None and len(data) == length)
        return data

    def held(self, value):
        """What a value holds. From its own bytes where its size is known, since it need not lie in
        memory, as when it is the result of an expression."""
        size = value.GetByteSize()
        if size < self.memory.layout.size:
            return self.memory.held_at(address_of(value))
        error = lldb.SBError()
        data = value.GetData().ReadRawData(error, 0, size)
        values.check(error.Success() and data is not None)
        return self.memory.held_in(data)

    def type_for(self, value):
        """The type that its children are given."""
        known = type_of(value)
        if known.GetByteSize():
            return known
        # There are no values of a type that is only declared. The formatters know this one, too.
        options = lldb.SBExpressionOptions()
        options.SetAllowJIT(False)
        options.SetSuppressPersistentResult(True)
        null = f"({OPAQUE}*)0"
        define = f"struct {OPAQUE} {{ char bytes[{self.memory.layout.size}]; }}; "
        for expression in (null, define + null):
            result = self.target.EvaluateExpression(expression, options)
            if result.GetError().Success():
                break
        return result.GetType().GetPointeeType()

    def no_value(self):
        """The data of a value that is shown as unreadable."""
        target, data = self.target, lldb.SBData()
        no_kind = b"\xff" * self.memory.layout.size
        data.SetData(
            lldb.SBError(), no_kind, target.GetByteOrder(), target.GetAddressByteSize()
        )
        return data

    def writer(self, limit=sys.maxsize, text_limit=sys.maxsize):
        return values.Writer(self.memory, limit, text_limit, MAX_DEPTH, "utf-8")

    def limited_writer(self):
        return self.writer(
            self.setting("target.max-children-count"),
            self.setting("target.max-string-summary-length"),
        )

    def setting(self, name):
        debugger = self.target.GetDebugger()
        values_set = debugger.GetInternalVariableValue(name, debugger.GetInstanceName())
        return int(values_set.GetStringAtIndex(0))


def layout_of(value_type):
    """None if the debug information only declares the type."""
    # A union without a name holds the variant.
    union = field(value_type, None)
    variant = union and field(union.GetType(), "variant_")
    which = variant and field(variant.GetType().GetCanonicalType(), "which_")
    storage = variant and field(variant.GetType().GetCanonicalType(), "storage_")
    if not which or not storage:
        return None
    offset = union.GetOffsetInBytes() + variant.GetOffsetInBytes()
    return values.Layout(
        value_type.GetByteSize(),
        offset + which.GetOffsetInBytes(),
        which.GetType().GetByteSize(),
        offset + storage.GetOffsetInBytes(),
    )


def field(of_type, name):
    """The field of that name, or the first without a name."""
    fields = (of_type.GetFieldAtIndex(i) for i in range(of_type.GetNumberOfFields()))
    return next((one for one in fields if (one.GetName() or None) == name), None)


def plain(value):
    """As the program has it, and where possible what a reference refers to: a class that is only
    declared has no values."""
    value = value.GetNonSyntheticValue()
    if value.GetType().IsReferenceType():
        referred = value.Dereference()
        if referred.IsValid() and referred.GetError().Success():
            return referred
    return value


def type_of(value):
    of_value = value.GetType()
    if of_value.IsReferenceType():
        of_value = of_value.GetDereferencedType()
    return of_value.GetCanonicalType().GetUnqualifiedType()


def address_of(value):
    if value.GetType().IsReferenceType():
        return value.GetValueAsUnsigned()
    address = value.GetLoadAddress()
    values.check(address != lldb.LLDB_INVALID_ADDRESS)
    return address


class Children:
    """Provides the elements of an array and the members of an object."""

    # By the address of a value that was shown within others: the addresses of the containers that
    # it lies in. One that contains itself, as only broken memory has it, is entered once. It is of
    # use only until the program goes on.
    around = {}
    stop = None

    def __init__(self, value, _internal_dict):
        self.value = value
        self.update()

    def update(self):
        self.held, self.children, self.ended = None, [], True
        value = plain(self.value)
        try:
            self.program = Program.of(value)
            held = self.program.held(value)
            self.outer = self.containers_around(value)
        except values.Unreadable:
            return False
        if can_be_entered(held, self.outer):
            self.held, self.ended = held, False
            self.rest = self.items()
        # What is kept is not good for another time.
        return False

    @classmethod
    def containers_around(cls, value):
        process = value.GetProcess()
        stop = process.GetUniqueID(), process.GetStopID()
        address = address_of(value)
        if stop != cls.stop or address not in cls.around:
            cls.stop = stop
            cls.around.clear()
        return cls.around.get(address, ())

    def items(self):
        """The name and the address of each child."""
        content = self.held.content
        if self.held.kind == "JSON array":
            yield from ((f"[{index}]", address) for index, address in enumerate(content.elements))
            return
        writer = self.program.writer()
        for name, address in content.members:
            yield f"[{writer.string(name)}]", address

    def reach(self, count):
        """Goes through the children up to that number."""
        while len(self.children) < count and not self.ended:
            try:
                self.children.append(next(self.rest))
            except StopIteration:
                self.ended = True
            except values.Unreadable:
                # What follows is likely not there either.
                self.children.append((f"[{len(self.children)}]", None))
                self.ended = True

    def num_children(self, limit=sys.maxsize):
        if self.held and self.held.kind == "JSON array":
            return self.held.content.length
        self.reach(limit)
        return min(len(self.children), limit)

    def has_children(self):
        return self.held is not None and self.held.content.length > 0

    def get_child_index(self, name):
        """Of an index or a member in brackets, or of a member by its name alone."""
        if self.held is None:
            return -1
        if self.held.kind == "JSON array":
            index = name.strip("[]")
            return int(index) if index.isdecimal() else -1
        self.reach(sys.maxsize)
        names = [child for child, _ in self.children]
        for wanted in (name, f"[{name}]", f"[{values.quoted(name.encode(), 'utf-8')}]"):
            if wanted in names:
                return names.index(wanted)
        return -1

    def get_child_at_index(self, index):
        if self.held is None or index < 0:
            return None
        if self.held.kind == "JSON array":
            elements = self.held.content.elements
            if index >= len(elements):
                return None
            return self.child(f"[{index}]", elements[index])
        self.reach(index + 1)
        return self.child(*self.children[index]) if index < len(self.children) else None

    def child(self, name, address):
        value = plain(self.value)
        of_type = self.program.type_for(value)
        if address is None:
            child = value.CreateValueFromData(name, self.program.no_value(), of_type)
        else:
            self.around[address] = *self.outer, self.held.content.address
            child = value.CreateValueFromAddress(name, address, of_type)
        return child.GetNonSyntheticValue()


def can_be_entered(held, containers):
    if held.kind not in ("JSON array", "JSON object") or held.content is values.Unreadable:
        return False
    return held.content.address not in containers and len(containers) < MAX_DEPTH


def value_summary(value, _internal_dict):
    value = plain(value)
    try:
        program = Program.of(value)
        held = program.held(value)
        if held.content is values.Unreadable or held.kind not in ("JSON array", "JSON object"):
            return program.limited_writer().value(held)
        containers = Children.containers_around(value)
        if held.content.address in containers:
            return f"{held.kind} {values.UNREADABLE}"
        hidden = held.content.length and not can_be_entered(held, containers)
        return values.summary(held) + (" {...}" if hidden else "")
    except values.Unreadable:
        return values.UNREADABLE


def exception_summary(exception, _internal_dict):
    exception = plain(exception)
    try:
        return Program(exception).limited_writer().exception_at(address_of(exception))
    except values.Unreadable:
        return f"ParserException {values.UNREADABLE}"


def json_command(debugger, path, context, result, _internal_dict):
    """Show a value of foundation::json as one text much like JSON.

    json VARIABLE

    The variable is named as for "frame variable", or by an expression. The setting
    target.max-children-count limits the number of values, at all depths together, and
    target.max-string-summary-length the length of each string."""
    if not path:
        result.SetError("expected: a variable or an expression")
        return
    frame = context.GetFrame()
    value = frame.GetValueForVariablePath(path)
    if not value.IsValid() or value.GetError().Fail():
        value = frame.EvaluateExpression(path)
    if value.GetError().Fail() or not value.IsValid():
        result.SetError((value.GetError().GetCString() or f"no value {path}").strip())
        return
    value = plain(value)
    if type_of(value).GetName() not in (VALUE, OPAQUE):
        result.SetError(f"this is no {VALUE}")
        return
    program = Program.of(value)
    try:
        result.AppendMessage(program.limited_writer().value(program.held(value)))
    except values.Unreadable:
        result.AppendMessage(values.UNREADABLE)


def __lldb_init_module(debugger, _internal_dict):
    # Pointers stay as they are.
    to_values = f"-p -w {CATEGORY} {VALUE} {OPAQUE}"
    for command in (
        f"type summary add -e -F {__name__}.value_summary {to_values}",
        f"type synthetic add -l {__name__}.Children {to_values}",
        f"type summary add -F {__name__}.exception_summary -p -w {CATEGORY} {EXCEPTION}",
        f"type category enable {CATEGORY}",
        f"command script add -o -f {__name__}.json_command json",
    ):
        debugger.HandleCommand(command)
