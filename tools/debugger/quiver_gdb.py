"""Shows the values of Quiver in gdb as what they stand for: source PREFIX/share/quiver/quiver_gdb.py

gdb has to know the classes from the debug information of the program: where the library was built without any, the program
has to be compiled with -g -femit-class-debug-always.
"""

import re

import gdb
import gdb.printing

# Longer texts are cut, and longer lists are not followed, as a broken object can hold any number.
MOST_UNITS = 2000
MOST_ITEMS = 2000


def read_units(pointer, count):
    """Text of UTF-16 units, one in each wchar_t."""
    size = gdb.lookup_type("wchar_t").sizeof
    cut = count > MOST_UNITS
    count = min(int(count), MOST_UNITS)
    if count == 0:
        return ""
    memory = bytes(gdb.selected_inferior().read_memory(int(pointer), count * size))
    units = [int.from_bytes(memory[n : n + size], "little") for n in range(0, len(memory), size)]
    octets = b"".join(unit.to_bytes(2, "little") if unit < 0x10000 else chr(unit).encode("utf-16-le") for unit in units)
    return octets.decode("utf-16-le", errors="replace") + ("..." if cut else "")


def read_string(string):
    """A std::wstring of libstdc++."""
    return read_units(string["_M_dataplus"]["_M_p"], string["_M_string_length"])


def read_vector(vector):
    """The items of a std::vector of libstdc++."""
    first, last = vector["_M_impl"]["_M_start"], vector["_M_impl"]["_M_finish"]
    if first.type.code == gdb.TYPE_CODE_STRUCT:
        return read_bits(first, last)
    return [(first + n).dereference() for n in range(min(int(last - first), MOST_ITEMS))]


def read_bits(first, last):
    """The items of a std::vector<bool>."""
    words, width = first["_M_p"], first["_M_p"].dereference().type.sizeof * 8
    count = int(last["_M_p"] - words) * width + int(last["_M_offset"]) - int(first["_M_offset"])
    bits = range(int(first["_M_offset"]), int(first["_M_offset"]) + min(count, MOST_ITEMS))
    boolean = gdb.lookup_type("bool")
    return [gdb.Value(int((words + n // width).dereference()) >> n % width & 1).cast(boolean) for n in bits]


def read_shared_text(text):
    pointer = text["m_pText"]["_M_ptr"]
    return "" if int(pointer) == 0 else read_string(pointer.dereference())


def read_pointer(address):
    size = gdb.lookup_type("void").pointer().sizeof
    return int.from_bytes(bytes(gdb.selected_inferior().read_memory(address, size)), "little")


def read_node_text(pointer):
    """A CXmlText, which is UTF-8 behind the object until somebody asked for it. No public header declares the class, so that
    the program's debug information does not have it."""
    address, size = int(pointer), gdb.lookup_type("void").pointer().sizeof
    if address == 0:
        return ""
    string = read_pointer(address)
    if string != 0:
        return read_units(read_pointer(string), read_pointer(string + size))
    memory = gdb.selected_inferior().read_memory
    length = min(int.from_bytes(bytes(memory(address + size, 4)), "little"), MOST_UNITS)
    return bytes(memory(address + size + 8, length)).decode("utf-8", errors="replace") if length else ""


def read_node_attributes(last):
    """The attributes of a CXmlElement, a ring of which the last one is known."""
    items = []
    item = last
    while int(last) != 0 and len(items) < MOST_ITEMS:
        item = item["m_pNext"]
        items.append(item.dereference())
        if int(item) == int(last):
            break
    return items


def quote(text):
    return '"' + text.replace("\\", "\\\\").replace('"', '\\"').replace("\n", "\\n") + '"'


def format_name(name, namespace):
    return "{" + namespace + "}" + name if namespace else name


def read_digits(number):
    """The digits of a CBigInteger, of which the lowest stands first."""
    return "".join(str(int(digit)) for digit in reversed(read_vector(number["m_digits"]))).lstrip("0") or "0"


def format_integer(number):
    digits = read_digits(number)
    return ("-" if int(number["m_sign"]) < 0 and digits != "0" else "") + digits


def format_decimal(number):
    places = int(number["m_divider"])
    fraction = read_digits(number["m_fraction"]).zfill(places).rstrip("0") if places else ""
    negative = int(number["m_whole"]["m_sign"]) < 0 or int(number["m_fraction"]["m_sign"]) < 0
    text = read_digits(number["m_whole"]) + ("." + fraction if fraction else "")
    return ("-" if negative and text != "0" else "") + text


def format_date(date):
    year, month, day = int(date["m_year"]), int(date["m_month"]), int(date["m_day"])
    years = f"{'-' if year < 0 else ''}{abs(year):04}"
    time = f"{int(date['m_hour']):02}:{int(date['m_minute']):02}:{int(date['m_second']):02}"
    fraction = f"{int(date['m_milli']):03}{int(date['m_micro']):03}{int(date['m_nano']):03}".rstrip("0")
    time += "." + fraction if fraction else ""
    forms = {
        "dt_dateTime": f"{years}-{month:02}-{day:02}T{time}",
        "dt_date": f"{years}-{month:02}-{day:02}",
        "dt_gYearMonth": f"{years}-{month:02}",
        "dt_gYear": years,
        "dt_time": time,
        "dt_gDay": f"---{day:02}",
        "dt_gMonth": f"--{month:02}",
        "dt_gMonthDay": f"--{month:02}-{day:02}",
    }
    kind = str(date["m_type"]).rsplit("::", 1)[-1]
    if kind not in forms:
        return "(no date)"
    if not bool(date["m_bUTC"]):
        return forms[kind]
    if not bool(date["m_bHasTimeZone"]):
        return forms[kind] + "Z"
    hour = int(date["m_zoneHour"])
    return f"{forms[kind]}{'-' if hour < 0 else '+'}{abs(hour):02}:{int(date['m_zoneMinute']):02}"


class Text:
    """Prints a value by one of the functions above."""

    def __init__(self, value, form):
        self.value = value
        self.form = form

    def to_string(self):
        return self.form(self.value)


# The members of a variant's union that hold a value themselves, by the end of the type's name.
DIRECT = ("i1", "i2", "i4", "i8", "ui1", "ui2", "ui4", "ui8", "r4", "r8", "year", "month", "day", "char", "boolean")
POINTERS = {
    "hexBinary": "m_pBinaryData",
    "base64Binary": "m_pBinaryData",
    "duration": "m_pDateTimeSpan",
    "string": "m_pString",
    "decimal": "m_pDecimal",
    "integer": "m_pBigInteger",
    "XmlObjectBase": "m_pXmlObject",
    "XmlCollection": "m_pXmlCol",
}


class Variant:
    def __init__(self, value):
        self.value = value
        self.kind = str(value["m_type"]).rsplit("ItemType_", 1)[-1]

    def to_string(self):
        return "nothing" if self.kind == "Invalid" else self.kind

    def children(self):
        if self.kind in ("char", "i1", "ui1", "month", "day"):
            yield "value", self.value["m_" + self.kind].cast(gdb.lookup_type("int"))
        elif self.kind in DIRECT:
            yield "value", self.value["m_" + self.kind]
        elif self.kind != "Invalid":
            pointer = self.value[POINTERS.get(self.kind, "m_pDateTime")]
            is_string = self.kind == "string" and int(pointer) != 0
            yield "value", quote(read_string(pointer.dereference())) if is_string else look_at(pointer)


def look_at(pointer):
    """What a pointer shows to, as what it is."""
    if int(pointer) == 0:
        return pointer
    try:
        return pointer.cast(pointer.dynamic_type).dereference()
    except gdb.error:
        return pointer.dereference()


class SmartPointer:
    def __init__(self, value):
        self.pointer = value[value.type.fields()[0].name]

    def to_string(self):
        return "null" if int(self.pointer) == 0 else f"({self.pointer.type}) {int(self.pointer):#x}"

    def children(self):
        if int(self.pointer) != 0:
            yield "object", look_at(self.pointer)


class List:
    """A collection, by the items that it has."""

    def __init__(self, value, items):
        self.value = value
        self.items = items

    def to_string(self):
        return f"{self.value.type.strip_typedefs().name.rsplit('::', 1)[-1]} of {len(self.items)}"

    def children(self):
        for number, item in enumerate(self.items):
            yield f"[{number}]", item


def list_nodes(collection):
    items = []
    node = collection["m_pHead"]
    while int(node) != 0 and len(items) < MOST_ITEMS:
        item = node["m_pItem"]
        items.append(look_at(item[item.type.fields()[0].name]))
        node = node["m_pNext"]
    return items


def print_objects(value):
    return List(value, list_nodes(value))


def print_values(value):
    items = read_vector(value["m_vecItems"])[int(value["m_nRemovedAhead"]) :]
    return List(value, [quote(read_string(item)) if is_wide_string(item) else item for item in items])


def is_wide_string(value):
    return (value.type.strip_typedefs().name or "").startswith("std::__cxx11::basic_string<wchar_t")


class Node:
    """An element with what is in it. The nodes of a parsed document and open content differ in how they hold it."""

    def __init__(self, name, text, attributes, children):
        self.name = name
        self.text = text
        self.attributes = attributes
        self.elements = children

    def to_string(self):
        shown = "".join(f" {name}={quote(value)}" for name, value in self.attributes)
        return f"<{self.name}{shown}>" + (" " + quote(self.text) if self.text else "")

    def children(self):
        for number, element in enumerate(self.elements):
            yield f"[{number}]", element


def name_of_node(node):
    name = node["m_pName"]
    return format_name(read_string(name["strLocalName"]), read_string(name["pstrNamespaceURI"].dereference()))


def print_parsed_element(value):
    attributes = [(name_of_node(item), read_node_text(item["m_pValue"]))
                  for item in read_node_attributes(value["m_pLastAttribute"])]
    children = []
    child = value["m_pFirstChild"]
    while int(child) != 0 and len(children) < MOST_ITEMS:
        children.append(child.dereference())
        child = child["m_pNextSibling"]
    return Node(name_of_node(value), read_node_text(value["m_pText"]), attributes, children)


def name_of_open_node(node):
    return format_name(read_string(node["m_strName"]), read_shared_text(node["m_strNamespace"]))


def list_held(pointer):
    """The items of a collection behind a CSmartPtr, which may be null."""
    held = pointer[pointer.type.fields()[0].name]
    return [] if int(held) == 0 else list_nodes(held.dereference())


def print_open_element(value):
    attributes = [(name_of_open_node(item), read_string(item["m_strValue"])) for item in list_held(value["m_spAttributes"])]
    return Node(name_of_open_node(value), read_string(value["m_strText"]), attributes, list_held(value["m_spChildElements"]))


def format_attribute(value):
    return f"{name_of_open_node(value)}={quote(read_string(value['m_strValue']))}"


def format_parsed_attribute(value):
    return f"{name_of_node(value)}={quote(read_node_text(value['m_pValue']))}"


PRINTERS = {
    "CBigInteger": lambda value: Text(value, format_integer),
    "CDecimal": lambda value: Text(value, format_decimal),
    "CDateTime": lambda value: Text(value, format_date),
    "CSharedText": lambda value: Text(value, lambda text: quote(read_shared_text(text))),
    "CAttribute": lambda value: Text(value, format_attribute),
    "CXmlAttribute": lambda value: Text(value, format_parsed_attribute),
    "QvVariant": Variant,
    "CXmlElement": print_parsed_element,
    "CElement": print_open_element,
}


def derives_from(kind, pattern):
    """Whether a class has one of that name among its bases, or is one."""
    if re.match(pattern, kind.name or ""):
        return True
    bases = [field for field in kind.fields() if field.is_base_class]
    return any(derives_from(field.type.strip_typedefs(), pattern) for field in bases)


def make_printer(value):
    kind = value.type.unqualified().strip_typedefs()
    if kind.code != gdb.TYPE_CODE_STRUCT or kind.name is None:
        return None
    if kind.name.startswith("CSmartPtr<"):
        return SmartPointer(value)
    if kind.name.startswith("QvXmlLib9::") and kind.name[len("QvXmlLib9::") :] in PRINTERS:
        return PRINTERS[kind.name[len("QvXmlLib9::") :]](value)
    # Generated collections derive from ours.
    if derives_from(kind, r"QvXmlLib9::CXmlCollection$"):
        return print_objects(value)
    if derives_from(kind, r"QvXmlLib9::CXmlVectorCollection<"):
        return print_values(value)
    return None


class Printers(gdb.printing.PrettyPrinter):
    def __call__(self, value):
        return make_printer(value)


gdb.printing.register_pretty_printer(None, Printers("quiver"), replace=True)
