"""Shows the types of BaseUtilities in GDB as what they mean.

GDB loads this file by itself together with the library, whose name it bears: from its auto-load
folder where the library is installed as a package, otherwise from beside the library, once that
folder is trusted (add-auto-load-safe-path). Memory is only read, and no function of the debugged
process is called, so core files are shown alike.
"""

import gdb
import gdb.printing


def bases(value):
    """The value itself and all parts that it derives from."""
    yield value
    for field in value.type.strip_typedefs().fields():
        if field.is_base_class:
            yield from bases(value[field])


def quoted(text):
    """Text between double quotes; what is not printable as GDB writes it."""
    escapes = {'"': '\\"', "\\": "\\\\", "\n": "\\n", "\t": "\\t", "\0": "\\000"}
    return '"' + "".join(escapes.get(character, character) for character in text) + '"'


def text_at(pointer, length):
    """`length` characters; at most as many as `set print elements` allows."""
    limit = gdb.parameter("print elements") or length
    shown = min(length, limit)
    text = quoted(pointer.string("utf-8", "replace", shown)) if shown else '""'
    return text if shown == length else text + "..."


def standard_string(value):
    return text_at(value["_M_dataplus"]["_M_p"], int(value["_M_string_length"]))


def status(value):
    return "status 0x%08x" % (int(value) & 0xFFFFFFFF)


class Printer:
    def __init__(self, value):
        is_reference = value.type.strip_typedefs().code in (gdb.TYPE_CODE_REF, gdb.TYPE_CODE_RVALUE_REF)
        self.value = value.referenced_value() if is_reference else value


class SafeString(Printer):
    def to_string(self):
        storage = self.value["m_pString"]
        return standard_string(storage.dereference()) if int(storage) else "<moved from>"


class View(Printer):
    ENCODINGS = {1: "utf-8", 2: "utf-16", 4: "utf-32"}

    def to_string(self):
        pointer, length = self.value["m_pText"], int(self.value["m_Length"])
        if not int(pointer):
            return "<not set>" if length == 0 else "<null with length %d>" % length
        limit = min(length, gdb.parameter("print elements") or length)
        size = pointer.type.target().sizeof
        raw = gdb.selected_inferior().read_memory(int(pointer), limit * size).tobytes()
        encoding = self.ENCODINGS[size] + ("" if size == 1 else "-le")
        text = quoted(raw.decode(encoding, "replace")) + ("..." if limit < length else "")
        return text if self.value["m_HasValue"] else text + " <flag not set>"


class SimpleBuffer(Printer):
    def to_string(self):
        pointer, size = self.value["m_pBuffer"], int(self.value["m_Size"])
        if int(pointer):
            raw = gdb.selected_inferior().read_memory(int(pointer), size).tobytes()
            length = raw.find(b"\0")
            return "%d bytes: %s" % (size, text_at(pointer, size if length < 0 else length))
        return "empty" if size == 0 else "no array: growing to %d bytes failed" % size


class Uuid(Printer):
    def to_string(self):
        last = [int(self.value["m_Data4"][index]) for index in range(8)]
        return "{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}" % (
            int(self.value["m_Data1"]), int(self.value["m_Data2"]), int(self.value["m_Data3"]),
            *last)


class Color(Printer):
    def to_string(self):
        return "rgba(%s)" % ", ".join(
            str(int(self.value[channel])) for channel in ("m_Red", "m_Green", "m_Blue", "m_Alpha"))


class FormatInfo(Printer):
    CHANGES = ("Color", "BackColor", "TextStyle", "Weight", "TextEffect")

    def to_string(self):
        changed = [name for name in self.CHANGES if self.value["m_%sChanged" % name]]
        had = [name for name in ("Color", "BackColor") if self.value["m_Has%s" % name]]
        return "changed: %s; has: %s" % (" ".join(changed) or "-", " ".join(had) or "-")

    def children(self):
        for name in self.CHANGES:
            value = self.value["m_" + name]
            yield name, int(value) if value.type.sizeof < 4 else value


class FamilyException(Printer):
    def to_string(self):
        value = self.value
        root = next(part for part in bases(value) if part.type.name == "TQException")
        # The standard base, of which compilers often describe nothing: a virtual table, a message.
        pointer = value.address.cast(
            gdb.lookup_type("char").const().pointer().pointer())[1]
        text = pointer.string("utf-8", "replace")
        return "%s %s, %s" % (
            value.dynamic_type.name, text_at(pointer, len(text.encode())),
            status(root["m_Status"]))


class AppExitException(Printer):
    def to_string(self):
        message = SafeString(self.value["m_Message"]).to_string()
        return "%s %s, %s" % (
            self.value.dynamic_type.name, message, status(self.value["m_Status"]))


class UserAbort(Printer):
    def to_string(self):
        return "TQUserAbort"


class UniquePointer(Printer):
    """The owner with a function object as its deleter."""

    def to_string(self):
        heads = {}
        for part in bases(self.value["_M_t"]["_M_t"]):
            for index in "0", "1":
                if part.type.strip_typedefs().name.startswith("std::_Head_base<%s" % index):
                    heads[index] = part["_M_head_impl"]
        if not int(heads["0"]):
            return "owner of nothing"
        manager = next(part for part in bases(heads["1"])
                       if part.type.strip_typedefs().name == "std::_Function_base")["_M_manager"]
        return "owner of %s%s" % (heads["0"].format_string(symbols=False),
                                  "" if int(manager) else " <without a deleter>")

    def children(self):
        for part in bases(self.value["_M_t"]["_M_t"]):
            if part.type.strip_typedefs().name.startswith("std::_Head_base<0"):
                pointer = part["_M_head_impl"]
                target = pointer.type.target().strip_typedefs()
                if int(pointer) and target.code != gdb.TYPE_CODE_VOID and target.sizeof:
                    yield "object", pointer.dereference()


def build():
    printers = gdb.printing.RegexpCollectionPrettyPrinter("BaseUtilities")
    for name, expression, printer in (
            ("CSafeString", "^CSafeString$", SafeString),
            ("basic_sv_wrapper", "^basic_sv_wrapper<.*>$", View),
            ("CSimpleBuffer", "^CSimpleBuffer$", SimpleBuffer),
            ("TQUuid", "^TQUuid$", Uuid),
            ("TQColor", "^TQColor$", Color),
            ("CFormatInfo", "^CFormatInfo$", FormatInfo),
            ("TQException", "^(TQ(App|DOMDoc|ParseTree|RunTime)?Exception|CTestSuiteException)$",
             FamilyException),
            ("TQAppExitException", "^TQAppExitException$", AppExitException),
            ("TQUserAbort", "^TQUserAbort$", UserAbort),
            ("custom_unique_ptr", r"^std::unique_ptr<.*, std::function<void ?\(.*\*\)> ?>$",
             UniquePointer)):
        printers.add_printer(name, expression, printer)
    return printers


# GDB asks the object files in the order in which they were loaded, and the standard library's own
# printers would claim the owner wherever that library came first, as it does when a program loads
# this one by dlopen. The program itself comes before both.
for objfile in (gdb.current_objfile(), *gdb.objfiles()[:1]):
    gdb.printing.register_pretty_printer(objfile, build(), replace=True)
