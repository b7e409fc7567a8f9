#!/usr/bin/env python3
"""Counts the flat exports of a built library by family, from its names alone.

    exports_check.py LIBRARY LIST [--nm NM] [--called SOURCE...]

LIST holds the decorated names (`_Name@bytes`) that the build wrote beside the library. The numbers
below are those of the interface as its clients know it; they do not come from the generator. With
--called, each name must occur in one of those sources.
"""

import argparse
import collections
import re
import subprocess
import sys

# Family: (exports, argument bytes that occur).
FAMILIES = {
    "constructor": (475, {0, 4, 8, 12}),
    "destructor": (233, {4}),
    "upcast": (136, {4}),
    "field get": (523, {4, 8, 20}),
    "field set": (309, {8, 12}),
    "class-valued assign": (213, {8, 12}),
    "presence test": (167, {4}),
    "presence clear": (167, {4}),
    "enumeration get": (38, {4}),
    "enumeration set": (38, {8}),
    "nil test": (12, {4}),
    "nil set": (12, {4}),
    "list append": (65, {4, 8}),
    "list insert": (65, {8, 12}),
    "list delete": (65, {8}),
    "list clear": (65, {4}),
    "list size": (65, {4}),
    "list back": (51, {4}),
    "swap": (152, {8}),
    "occurrence check": (152, {4}),
    "reset": (152, {4}),
    "marshal": (69, {8}),
    "unmarshal": (138, {8, 12}),
    "namespace map": (69, {0}),
    "clone": (70, {4}),
    "getid": (70, {4}),
    "has_id": (70, {8}),
    "id_get": (70, {0}),
    "id_set": (70, {4}),
    "choice": (12, {4}),
    "factory": (8, {8}),
    "document": (4, {4, 8}),
    "result": (2, {4}),
    "value class members": (151, {4, 8, 12, 16}),
    "free functions": (19, {4, 8, 16}),
    "constants": (13, {0}),
    "registration": (3, {4, 12, 44}),
}
ALL = 3993
SOLE_FIRST_OVERLOADS = 290  # names that end in __SWIG_0 and have no __SWIG_1 beside them
WRAPPED_CLASSES = 234

# Names that show the rules at work, each with its bytes.
SAMPLES = """
    _CSharp_new_Averaging__SWIG_0@0 _CSharp_new_Averaging__SWIG_1@4 _CSharp_delete_Averaging@4
    _CSharp_Averaging_reset@4 _CSharp_ColorSpaceAdobeRGBType_id_get@0 _CSharp_ColorSpaceCMYKUpcast@4
    _CSharp_length@4 _CSharp_LMXNULL_get@0 _CSharp_new_c_decimal__SWIG_7@8
    _CSharp_Header_get_Name@4 _CSharp_Header_set_Name@8 _CSharp_Header_get_ChangeHistory@8
    _CSharp_Header_set_ChangeHistory@12 _CSharp_AxisType_get_AxisValueChoice__SWIG_0@4
    _CSharp_AxisType_assign_AxisValueChoice@8 _CSharp_Averaging_isset_Averaging@4
    _CSharp_GlossCompensation_isset_GlossCompensation@4
    _CSharp_CalibrationStateType_getenum_CalibrationStateType@4
    _CSharp_CalibrationStateType_setenum_CalibrationStateType@8 _CSharp_Standard_isnil_Standard@4
    _CSharp_Base_append_CustomAttribute@4 _CSharp_Base_insert_CustomAttribute@8
    _CSharp_Base_delete_CustomAttribute@8 _CSharp_Base_clear_CustomAttribute@4
    _CSharp_Base_size_CustomAttribute@4 _CSharp_Base_back_CustomAttribute@4
    _CSharp_ColorSpaceCMYK_marshal__SWIG_0@8 _CSharp_ColorSpaceCMYK_unmarshal__SWIG_0@8
    _CSharp_ColorSpaceCMYK_unmarshal__SWIG_1@12 _CSharp_Function_ns_map@0
    _CSharp_ColorSpaceCMYKType_clone@4 _CSharp_ColorSpaceCMYKType_has_id@8
    _CSharp_ColorSpaceCMYKType_id_set@4 _CSharp_ValueChoice_getchosen@4
    _CSharp_ColorSpaceCMYKType_factory@8 _CSharp_Revision_get_any@20 _CSharp_Revision_insert_any@12
    _CSharp_Zol_loadFile@8 _CSharp_Zol_writeString@4 _CSharp_new_XMLDocumentResult@8
    _CSharp_new_ColorSpaceCMYKPlusN__SWIG_2@8 _CSharp_new_ColorSpaceCMYKPlusN__SWIG_3@12
    _CSharp_new_c_any_info__SWIG_1@12 _CSharp_new_c_any_info__SWIG_3@4
    _CSharp_new_c_big_int__SWIG_4@4 _CSharp_new_c_binary__SWIG_2@8 _CSharp_new_c_datetime_base@0
    _CSharp_new_c_empty@0 _CSharp_new_c_pattern@4 _CSharp_new_c_pattern_null@4
    _CSharp_TagValue_assign_anon_TextValue@8 _CSharp_TagValue_get_anon_TextValue__SWIG_0@4
    _CSharp_ColorSpaceRGBType_set_Red@12 _CSharp_sg_ColorSpace_assign_ColorSpaceCMYK__SWIG_0@8
    _CSharp_sg_Function_assign_Function__SWIG_0@8 _CSharp_c_decimal_set__SWIG_0@16
    _CSharp_c_decimal_get_scaled@8 _CSharp_c_duration_is_valid__SWIG_0@4
    _CSharp_c_gmonthday_set_offset@12 _CSharp_c_pattern_null_is_match__SWIG_0@8
    _CSharp_convert__SWIG_0@4 _CSharp_convert_to_wide__SWIG_0@4 _CSharp_stringncompare@16
    _SWIGRegisterExceptionCallbacks_ZolModule@44
    _SWIGRegisterExceptionArgumentCallbacks_ZolModule@12 _SWIGRegisterStringCallback_ZolModule@4
""".split()
ABSENT = """
    _CSharp_new_c_big_int__SWIG_3 _CSharp_new_c_decimal__SWIG_3 _CSharp_delete_c_datetime_base
    _CSharp_FunctionTolerance_ns_map _CSharp_ColorSpaceCMYK_swap
    _CSharp_sg_ColorSpace_assign_ColorSpaceCMYK__SWIG_1
""".split()

FREE_FUNCTIONS = set("""
    convert convert_to_narrow convert_to_wide fraction_digits get_error_description
    is_max_length_ok is_min_length_ok is_valid_bool is_valid_float is_valid_integer length
    stringncompare total_digits xisalnum xisalpha xisdigit xisprint xisspace xisxdigit
""".split())

OPERATIONS = [(re.compile(pattern + "$"), family) for pattern, family in (
    ("swap", "swap"), ("reset", "reset"), ("is_occurs_ok", "occurrence check"),
    ("marshal__SWIG_0", "marshal"), ("unmarshal__SWIG_[01]", "unmarshal"),
    ("ns_map", "namespace map"), ("clone", "clone"), ("getid", "getid"), ("has_id", "has_id"),
    ("id_get", "id_get"), ("id_set", "id_set"), ("getchosen", "choice"), ("factory", "factory"),
    ("get_.*", "field get"), ("set_.*", "field set"), ("assign_.*", "class-valued assign"),
    ("isset_.*", "presence test"), ("unset_.*", "presence clear"),
    ("getenum_.*", "enumeration get"), ("setenum_.*", "enumeration set"),
    ("isnil_.*", "nil test"), ("setnil_.*", "nil set"), ("append_.*", "list append"),
    ("insert_.*", "list insert"), ("delete_.*", "list delete"), ("clear_.*", "list clear"),
    ("size_.*", "list size"), ("back_.*", "list back"))]


def family_of(name, classes):
    if name.startswith("_SWIGRegister"):
        return "registration"
    rest = name[len("_CSharp_"):]
    if rest.startswith("new_"):
        return "constructor"
    if rest.startswith("delete_"):
        return "destructor"
    if rest.endswith("Upcast"):
        return "upcast"
    if re.match(r"LMX[A-Z_]*_get$", rest):
        return "constants"
    if re.sub(r"__SWIG_\d+$", "", rest) in FREE_FUNCTIONS:
        return "free functions"
    owner = max((c for c in classes if rest.startswith(c + "_")), key=len, default=None)
    if owner is None:
        return None
    operation = rest[len(owner) + 1:]
    if owner == "Zol" and operation in ("loadFile", "loadString", "writeFile", "writeString"):
        return "document"
    if owner == "XMLDocumentResult":
        return "result"
    if owner.startswith("c_"):
        return "value class members"
    return next((family for pattern, family in OPERATIONS if pattern.match(operation)), None)


def exported_names(library, nm):
    command = [nm, "-D", "--defined-only", "--format=posix", library]
    lines = subprocess.run(command, check=True, capture_output=True, text=True).stdout.splitlines()
    names = [line.split()[0] for line in lines]
    return {name for name in names if name.startswith(("_CSharp_", "_SWIG"))}


def used_names(sources):
    used = set()
    for source in sources:
        with open(source, encoding="utf-8") as file:
            used.update(re.findall(r"_(?:CSharp_|SWIG)\w+", file.read()))
    return used


def faults(names, listed):
    bytes_of = {}
    for decorated in listed:
        name, _, count = decorated.rpartition("@")
        bytes_of[name] = int(count)
    for name in sorted(names - bytes_of.keys()):
        yield f"{name} is exported and not listed"
    for name in sorted(bytes_of.keys() - names):
        yield f"{name} is listed and not exported"
    if len(listed) != len(bytes_of):
        yield "a name is listed twice"

    classes = {re.sub(r"__SWIG_\d+$", "", name[len("_CSharp_new_"):])
               for name in names if name.startswith("_CSharp_new_")}
    if len(classes) != WRAPPED_CLASSES:
        yield f"{len(classes)} classes are wrapped, not {WRAPPED_CLASSES}"
    counts = collections.Counter()
    for name in sorted(names):
        family = family_of(name, classes)
        if family is None:
            yield f"{name} belongs to no family"
            continue
        counts[family] += 1
        if name in bytes_of and bytes_of[name] not in FAMILIES[family][1]:
            yield f"{name} takes {bytes_of[name]} bytes, which a {family} never does"
    for family, (want, _) in FAMILIES.items():
        print(f"{counts[family]:5}  {family}")
        if counts[family] != want:
            yield f"{counts[family]} exports of family '{family}', not {want}"
    print(f"{len(names):5}  in all")
    if len(names) != ALL:
        yield f"{len(names)} exports, not {ALL}"
    sole = [n for n in names if n.endswith("__SWIG_0") and n[:-1] + "1" not in names]
    if len(sole) != SOLE_FIRST_OVERLOADS:
        yield f"{len(sole)} names carry __SWIG_0 alone, not {SOLE_FIRST_OVERLOADS}"
    for decorated in sorted(set(SAMPLES) - set(listed)):
        yield f"{decorated} is missing"
    for name in ABSENT:
        if name in names:
            yield f"{name} must not exist"


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("library")
    parser.add_argument("list")
    parser.add_argument("--nm", default="nm")
    parser.add_argument("--called", nargs="*", default=[])
    options = parser.parse_args()
    with open(options.list, encoding="ascii") as file:
        listed = file.read().split()
    names = exported_names(options.library, options.nm)
    found = list(faults(names, listed))
    if options.called:
        found += [f"no test calls {name}" for name in sorted(names - used_names(options.called))]
    for fault in found:
        print(fault, file=sys.stderr)
    sys.exit(1 if found else 0)


if __name__ == "__main__":
    main()
