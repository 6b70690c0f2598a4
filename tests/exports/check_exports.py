#!/usr/bin/env python3
"""What leaves the module, and nothing else:  check_exports.py OBJDUMP OndDeviceClient.dll OndDeviceClient.def

The plain functions are those of the .def file, undecorated. The exported classes appear under the compiler's own names: members, virtual
tables and type information of the class itself, of no other.
"""

import pathlib
import re
import subprocess
import sys

CLASSES = {
    "CONXDeviceClient": [
        "GetParam", "SetParam", "GetParamLimits", "Connect", "Call", "ShowDialogNonModal", "CloseDialogNonModal",
        "IsNonModalDialogOpen", "SetDlgEventData", "CreateNewDialog", "DeleteDialog", "SignalDlgEvent", "ParseString",
        "SplitFileName", "ConcatenatePathAndFile", "IsAbsolutePath", "MakeRelativePath", "toUpperGer", "FillEntry",
        "LoadJobFile", "SaveJobFile",
    ],
    "CONXDialog": [
        "UpdateDialogState", "UpdateCommStatus", "RepairHorizontalScrollbarExtendInListBox",
        "CopyListBoxContentToClipBoard", "AutoDlgCtrlPlacement", "OnSizeDlgCtrlPlacement", "SetOwnerClass",
        "SetDeviceComm", "Create", "OnInitDialog", "OnOK", "OnCancel",
    ],
}


def exported(objdump, module):
    listing = subprocess.run([objdump, "-p", module], check=True, capture_output=True, text=True).stdout
    table = listing.split("[Ordinal/Name Pointer] Table")[1].split("\n\n")[0]
    return set(re.findall(r"^\s*\[ *\d+\] (?:\+base\[ *\d+\] +[0-9a-f]+ )?(\S+)$", table, re.MULTILINE))


def members(names, class_name):
    """The exported names that belong to a class, by the scheme of the C++ compiler's names: length, then name."""
    scope = f"{len(class_name)}{class_name}"
    pattern = re.compile(rf"_Z(?:NK?{scope}|T[VIS]{scope}$)")
    return {name for name in names if pattern.match(name)}


def main():
    objdump, module, definition = sys.argv[1:]
    names = exported(objdump, module)
    plain = set(pathlib.Path(definition).read_text().split("EXPORTS")[1].split())
    problems = [f"not exported: {name}" for name in sorted(plain - names)]
    rest = names - plain
    for class_name, operations in CLASSES.items():
        of_class = members(names, class_name)
        rest -= of_class
        wanted = [f"{len(operation)}{operation}" for operation in operations] + ["C1", "C2", "D1", "D2"]
        for part in wanted:
            pattern = re.compile(rf"_ZNK?{len(class_name)}{class_name}{part}E")
            if not any(map(pattern.match, of_class)):
                problems.append(f"not exported: {part.lstrip('0123456789')} of {class_name}")
        if f"_ZTV{len(class_name)}{class_name}" not in of_class:
            problems.append(f"not exported: the virtual table of {class_name}")
    problems += [f"exported without need: {name}" for name in sorted(rest)]
    print("\n".join(problems) or f"{len(names)} exports, all as they should be")
    sys.exit(1 if problems else 0)


if __name__ == "__main__":
    main()
