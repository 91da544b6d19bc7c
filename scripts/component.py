# SPDX-License-Identifier: Apache-2.0
"""What the component's interface description says, and which scripts call what. For scripts/operations."""
import pathlib
import re

ROOT = pathlib.Path(__file__).resolve().parent.parent
IDL = ROOT / "src" / "com"
SCRIPTS = ROOT / "tests" / "com"
# How scripts name objects of a class; case does not count.
RECEIVERS = {
    "clsVesk": r"vesk",
    "clsVeskDocument": r"document",
    "clsVeskManual": r"manual",
    "clsVeskRevision": r"revision",
    "clsVeskUser": r"user",
    "clsQuery": r"blank",
    "clsDocumentQuery": r"documentQuery",
    "clsManualQuery": r"manualQuery",
    "clsUserQuery": r"userQuery",
    "kvDataServer": r"server|DataServer",
    "kvConfig": r"config",
    "kvConnection": r"connection",
    "kvProfile": r"profile",
    "kvQueries": r"queries",
    "kvUser": r"users",
    "kvSender": r"Sender\(\)",
    "kvRecordset": r"rs|copy|free",
    "kvFields": r"fields",
    "kvField": r"field|rs\(\"\w+\"\)|rs\(0\)|Fields\(\"\w+\"\)",
}
CLASS_OF = {"Recordset": "kvRecordset"}
NUMBERS = {"std::int32_t": ["long*"], "std::int16_t": ["short*"], "bool": ["VARIANT_BOOL*"],
           "std::string": ["BSTR*", "BSTR"], "Variant": ["VARIANT*"], "Date": ["DATE*"]}


class Member:
    def __init__(self, name, kind, arguments):
        self.name, self.kind = name, kind
        self.result = next((a for a in arguments if "retval" in a[0]), None)
        self.arguments = [a for a in arguments if "retval" not in a[0]]


def interfaces():
    """Members of each interface in their order, by the name of the class."""
    found = {}
    for path in sorted(IDL.glob("*.idl")):
        text = re.sub(r"//[^\n]*", "", path.read_text())
        for body in re.finditer(r"interface _(\w+) : IDispatch \{(.*?)\n\}", text, re.S):
            members = []
            for m in re.finditer(r"\[id\(-?\d+\)([^\]]*)\] HRESULT (\w+)\((.*?)\);", body[2], re.S):
                kind = next((k for k in ("propget", "propputref", "propput") if k in m[1]), "method")
                arguments = re.findall(r"\[((?:[^\]])*)\] ([\w*]+) (\w+)", m[3])
                members.append(Member(m[2], kind, arguments))
            found[body[1]] = members
    return found


def creatable():
    """The classes that clients create: by the description, by the manifest, with their GUIDs, and by the DLL."""
    described = {name: guid for guid, attributes, name in
                 re.findall(r"\[uuid\(([\w-]+)\)([^\]]*)\] coclass (\w+)", (IDL / "kvvesk.idl").read_text())
                 if "noncreatable" not in attributes}
    manifest = {name: guid for guid, name in
                re.findall(r'clsid="\{([\w-]+)\}" progid="KvVesk\.(\w+)\.1"',
                           (IDL / "kvvesk.dll.manifest").read_text())}
    made = set(re.findall(r'creatable<\w+>\(L"(\w+)"', (IDL / "creatable.cpp").read_text()))
    return described, manifest, made


def idl_types(declared):
    """The types that may stand for one of C++."""
    plain = re.sub(r"^\[\[nodiscard\]\] ?", "", declared).replace("const ", "").rstrip("& ").strip()
    reference = re.fullmatch(r"Ref<(\w+)>", plain)
    if reference:
        name = CLASS_OF.get(reference[1], reference[1])
        return ["_%s**" % name]
    return NUMBERS.get(plain, [])


def argument_faults(operation, forms, members):
    """What differs between the overloads in C++ (lists of type, name, default) and the members."""
    if any(m.kind != "method" for m in members):
        return []
    member = members[0]
    longest = max(forms, key=len)
    required = min(sum(1 for a in form if not a[2]) for form in forms)
    if [a[1] for a in longest] != [a[2] for a in member.arguments]:
        return ["arguments have other names"]
    faults = []
    for place, (wanted, given) in enumerate(zip(longest, member.arguments)):
        types = idl_types(wanted[0])
        enumeration = wanted[0] == "std::int16_t" and re.fullmatch(r"e\w+\*", given[1])
        if given[1] not in types and not enumeration:
            faults.append("%s has another type" % given[2])
        optional = "optional" in given[0] or "PRESET" in given[0]
        if optional != (place >= required):
            faults.append("%s is optional in one only" % given[2])
    return faults


def scripts():
    return {path.name: re.sub(r"(?m)^\s*'.*$", "", path.read_text())
            for path in sorted(SCRIPTS.glob("*.vbs")) if not path.name.endswith(".inc.vbs")}


def script_that_calls(name, operation, texts):
    """A script that calls the operation on an object of the class, the class's own before others."""
    call = re.compile(r"(?:^|\W)(?:%s)\.%s\b" % (RECEIVERS[name], operation), re.I | re.M)
    own = "queries.vbs" if name.endswith("Query") else RECEIVERS[name] + ".vbs"
    return next((script for script in sorted(texts, key=lambda script: script != own)
                 if call.search(texts[script])), None)


def bound_early():
    """The members that the client in C++ compares, in its order."""
    text = (SCRIPTS / "early_bound_members.inc").read_text()
    kinds = {"GETTER": "propget", "SETTER": "propputref", "PUTTER": "propput", "MEMBER": "method"}
    return [(kinds[k], c, m) for k, c, m in re.findall(r"(\w+)\(_(\w+), (\w+)\);", text)]
