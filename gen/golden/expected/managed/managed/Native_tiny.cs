// Generated from tiny.rows by gen/emit_managed.py: edit those, not this.
using System;
using System.Runtime.InteropServices;

namespace Zol.Interop
{
  internal static partial class Native
  {
    [DllImport(Library, EntryPoint = Prefix + "new_Zol__SWIG_0", CharSet = CharSet.Unicode)]
    internal static extern IntPtr new_Zol__SWIG_0();
    [DllImport(Library, EntryPoint = Prefix + "new_Zol__SWIG_1", CharSet = CharSet.Unicode)]
    internal static extern IntPtr new_Zol__SWIG_1(HandleRef other);
    [DllImport(Library, EntryPoint = Prefix + "delete_Zol", CharSet = CharSet.Unicode)]
    internal static extern void delete_Zol(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Zol_swap", CharSet = CharSet.Unicode)]
    internal static extern void Zol_swap(HandleRef self, HandleRef other);
    [DllImport(Library, EntryPoint = Prefix + "Zol_reset", CharSet = CharSet.Unicode)]
    internal static extern void Zol_reset(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Zol_is_occurs_ok", CharSet = CharSet.Unicode)]
    internal static extern bool Zol_is_occurs_ok(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Zol_marshal__SWIG_0", CharSet = CharSet.Unicode)]
    internal static extern int Zol_marshal__SWIG_0(HandleRef self, IntPtr writer);
    [DllImport(Library, EntryPoint = Prefix + "Zol_unmarshal__SWIG_0", CharSet = CharSet.Unicode)]
    internal static extern int Zol_unmarshal__SWIG_0(HandleRef self, IntPtr reader);
    [DllImport(Library, EntryPoint = Prefix + "Zol_unmarshal__SWIG_1", CharSet = CharSet.Unicode)]
    internal static extern int Zol_unmarshal__SWIG_1(HandleRef self, IntPtr reader, IntPtr name);
    [DllImport(Library, EntryPoint = Prefix + "Zol_ns_map", CharSet = CharSet.Unicode)]
    internal static extern IntPtr Zol_ns_map();
    [DllImport(Library, EntryPoint = Prefix + "Zol_loadFile", CharSet = CharSet.Unicode)]
    internal static extern int Zol_loadFile(HandleRef self, string path);
    [DllImport(Library, EntryPoint = Prefix + "Zol_loadString", CharSet = CharSet.Unicode)]
    internal static extern int Zol_loadString(HandleRef self, string text);
    [DllImport(Library, EntryPoint = Prefix + "Zol_writeFile", CharSet = CharSet.Unicode)]
    internal static extern int Zol_writeFile(HandleRef self, string path);
    [DllImport(Library, EntryPoint = Prefix + "Zol_writeString", CharSet = CharSet.Unicode)]
    internal static extern IntPtr Zol_writeString(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Zol_get_Note", CharSet = CharSet.Unicode)]
    internal static extern IntPtr Zol_get_Note(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Zol_set_Note", CharSet = CharSet.Unicode)]
    internal static extern int Zol_set_Note(HandleRef self, string value);
    [DllImport(Library, EntryPoint = Prefix + "Zol_get_Stamp", CharSet = CharSet.Unicode)]
    internal static extern IntPtr Zol_get_Stamp(HandleRef self, uint index);
    [DllImport(Library, EntryPoint = Prefix + "Zol_set_Stamp", CharSet = CharSet.Unicode)]
    internal static extern int Zol_set_Stamp(HandleRef self, uint index, HandleRef value);
    [DllImport(Library, EntryPoint = Prefix + "Zol_append_Stamp", CharSet = CharSet.Unicode)]
    internal static extern int Zol_append_Stamp(HandleRef self, HandleRef value);
    [DllImport(Library, EntryPoint = Prefix + "Zol_insert_Stamp", CharSet = CharSet.Unicode)]
    internal static extern int Zol_insert_Stamp(HandleRef self, uint index, HandleRef value);
    [DllImport(Library, EntryPoint = Prefix + "Zol_delete_Stamp", CharSet = CharSet.Unicode)]
    internal static extern void Zol_delete_Stamp(HandleRef self, uint index);
    [DllImport(Library, EntryPoint = Prefix + "Zol_clear_Stamp", CharSet = CharSet.Unicode)]
    internal static extern void Zol_clear_Stamp(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Zol_size_Stamp", CharSet = CharSet.Unicode)]
    internal static extern uint Zol_size_Stamp(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Zol_get_Alias", CharSet = CharSet.Unicode)]
    internal static extern IntPtr Zol_get_Alias(HandleRef self, uint index);
    [DllImport(Library, EntryPoint = Prefix + "Zol_set_Alias", CharSet = CharSet.Unicode)]
    internal static extern int Zol_set_Alias(HandleRef self, uint index, string value);
    [DllImport(Library, EntryPoint = Prefix + "Zol_append_Alias", CharSet = CharSet.Unicode)]
    internal static extern int Zol_append_Alias(HandleRef self, string value);
    [DllImport(Library, EntryPoint = Prefix + "Zol_insert_Alias", CharSet = CharSet.Unicode)]
    internal static extern int Zol_insert_Alias(HandleRef self, uint index, string value);
    [DllImport(Library, EntryPoint = Prefix + "Zol_delete_Alias", CharSet = CharSet.Unicode)]
    internal static extern void Zol_delete_Alias(HandleRef self, uint index);
    [DllImport(Library, EntryPoint = Prefix + "Zol_clear_Alias", CharSet = CharSet.Unicode)]
    internal static extern void Zol_clear_Alias(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Zol_size_Alias", CharSet = CharSet.Unicode)]
    internal static extern uint Zol_size_Alias(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Zol_get_Size", CharSet = CharSet.Unicode)]
    internal static extern uint Zol_get_Size(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Zol_set_Size", CharSet = CharSet.Unicode)]
    internal static extern int Zol_set_Size(HandleRef self, uint value);
    [DllImport(Library, EntryPoint = Prefix + "Zol_isset_Size", CharSet = CharSet.Unicode)]
    internal static extern bool Zol_isset_Size(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Zol_unset_Size", CharSet = CharSet.Unicode)]
    internal static extern void Zol_unset_Size(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Zol_get_Box__SWIG_0", CharSet = CharSet.Unicode)]
    internal static extern IntPtr Zol_get_Box__SWIG_0(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Zol_assign_Box", CharSet = CharSet.Unicode)]
    internal static extern int Zol_assign_Box(HandleRef self, HandleRef value);
    [DllImport(Library, EntryPoint = Prefix + "Zol_get_Lid__SWIG_0", CharSet = CharSet.Unicode)]
    internal static extern IntPtr Zol_get_Lid__SWIG_0(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Zol_assign_Lid", CharSet = CharSet.Unicode)]
    internal static extern int Zol_assign_Lid(HandleRef self, HandleRef value);
    [DllImport(Library, EntryPoint = Prefix + "Zol_isset_Lid", CharSet = CharSet.Unicode)]
    internal static extern bool Zol_isset_Lid(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Zol_unset_Lid", CharSet = CharSet.Unicode)]
    internal static extern void Zol_unset_Lid(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Zol_get_Part__SWIG_0", CharSet = CharSet.Unicode)]
    internal static extern IntPtr Zol_get_Part__SWIG_0(HandleRef self, uint index);
    [DllImport(Library, EntryPoint = Prefix + "Zol_assign_Part", CharSet = CharSet.Unicode)]
    internal static extern int Zol_assign_Part(HandleRef self, uint index, HandleRef value);
    [DllImport(Library, EntryPoint = Prefix + "Zol_append_Part", CharSet = CharSet.Unicode)]
    internal static extern IntPtr Zol_append_Part(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Zol_insert_Part", CharSet = CharSet.Unicode)]
    internal static extern IntPtr Zol_insert_Part(HandleRef self, uint index);
    [DllImport(Library, EntryPoint = Prefix + "Zol_back_Part", CharSet = CharSet.Unicode)]
    internal static extern IntPtr Zol_back_Part(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Zol_delete_Part", CharSet = CharSet.Unicode)]
    internal static extern void Zol_delete_Part(HandleRef self, uint index);
    [DllImport(Library, EntryPoint = Prefix + "Zol_clear_Part", CharSet = CharSet.Unicode)]
    internal static extern void Zol_clear_Part(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Zol_size_Part", CharSet = CharSet.Unicode)]
    internal static extern uint Zol_size_Part(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Zol_get_Shape__SWIG_0", CharSet = CharSet.Unicode)]
    internal static extern IntPtr Zol_get_Shape__SWIG_0(HandleRef self, uint index);
    [DllImport(Library, EntryPoint = Prefix + "Zol_assign_Shape", CharSet = CharSet.Unicode)]
    internal static extern int Zol_assign_Shape(HandleRef self, uint index, HandleRef value);
    [DllImport(Library, EntryPoint = Prefix + "Zol_append_Shape", CharSet = CharSet.Unicode)]
    internal static extern IntPtr Zol_append_Shape(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Zol_insert_Shape", CharSet = CharSet.Unicode)]
    internal static extern IntPtr Zol_insert_Shape(HandleRef self, uint index);
    [DllImport(Library, EntryPoint = Prefix + "Zol_back_Shape", CharSet = CharSet.Unicode)]
    internal static extern IntPtr Zol_back_Shape(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Zol_delete_Shape", CharSet = CharSet.Unicode)]
    internal static extern void Zol_delete_Shape(HandleRef self, uint index);
    [DllImport(Library, EntryPoint = Prefix + "Zol_clear_Shape", CharSet = CharSet.Unicode)]
    internal static extern void Zol_clear_Shape(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Zol_size_Shape", CharSet = CharSet.Unicode)]
    internal static extern uint Zol_size_Shape(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Zol_get_Outline__SWIG_0", CharSet = CharSet.Unicode)]
    internal static extern IntPtr Zol_get_Outline__SWIG_0(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Zol_assign_Outline", CharSet = CharSet.Unicode)]
    internal static extern int Zol_assign_Outline(HandleRef self, HandleRef value);
    [DllImport(Library, EntryPoint = Prefix + "Zol_get_anon_Tag__SWIG_0", CharSet = CharSet.Unicode)]
    internal static extern IntPtr Zol_get_anon_Tag__SWIG_0(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Zol_assign_anon_Tag", CharSet = CharSet.Unicode)]
    internal static extern int Zol_assign_anon_Tag(HandleRef self, HandleRef value);
    [DllImport(Library, EntryPoint = Prefix + "Zol_get_any", CharSet = CharSet.Unicode)]
    internal static extern void Zol_get_any(HandleRef self, uint index, byte[] full_name, byte[] namespace_uri, byte[] text);
    [DllImport(Library, EntryPoint = Prefix + "Zol_append_any", CharSet = CharSet.Unicode)]
    internal static extern int Zol_append_any(HandleRef self, byte[] text);
    [DllImport(Library, EntryPoint = Prefix + "Zol_insert_any", CharSet = CharSet.Unicode)]
    internal static extern int Zol_insert_any(HandleRef self, uint index, byte[] text);
    [DllImport(Library, EntryPoint = Prefix + "Zol_delete_any", CharSet = CharSet.Unicode)]
    internal static extern void Zol_delete_any(HandleRef self, uint index);
    [DllImport(Library, EntryPoint = Prefix + "Zol_clear_any", CharSet = CharSet.Unicode)]
    internal static extern void Zol_clear_any(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Zol_size_any", CharSet = CharSet.Unicode)]
    internal static extern uint Zol_size_any(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "new_Box__SWIG_0", CharSet = CharSet.Unicode)]
    internal static extern IntPtr new_Box__SWIG_0();
    [DllImport(Library, EntryPoint = Prefix + "new_Box__SWIG_1", CharSet = CharSet.Unicode)]
    internal static extern IntPtr new_Box__SWIG_1(HandleRef other);
    [DllImport(Library, EntryPoint = Prefix + "delete_Box", CharSet = CharSet.Unicode)]
    internal static extern void delete_Box(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Box_swap", CharSet = CharSet.Unicode)]
    internal static extern void Box_swap(HandleRef self, HandleRef other);
    [DllImport(Library, EntryPoint = Prefix + "Box_reset", CharSet = CharSet.Unicode)]
    internal static extern void Box_reset(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Box_is_occurs_ok", CharSet = CharSet.Unicode)]
    internal static extern bool Box_is_occurs_ok(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Box_setnil_Box", CharSet = CharSet.Unicode)]
    internal static extern void Box_setnil_Box(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Box_isnil_Box", CharSet = CharSet.Unicode)]
    internal static extern bool Box_isnil_Box(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Box_get_Grade", CharSet = CharSet.Unicode)]
    internal static extern IntPtr Box_get_Grade(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Box_set_Grade", CharSet = CharSet.Unicode)]
    internal static extern int Box_set_Grade(HandleRef self, string value);
    [DllImport(Library, EntryPoint = Prefix + "Box_getenum_Grade", CharSet = CharSet.Unicode)]
    internal static extern int Box_getenum_Grade(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Box_setenum_Grade", CharSet = CharSet.Unicode)]
    internal static extern bool Box_setenum_Grade(HandleRef self, int value);
    [DllImport(Library, EntryPoint = Prefix + "Box_get_Spare", CharSet = CharSet.Unicode)]
    internal static extern IntPtr Box_get_Spare(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Box_set_Spare", CharSet = CharSet.Unicode)]
    internal static extern int Box_set_Spare(HandleRef self, string value);
    [DllImport(Library, EntryPoint = Prefix + "Box_getenum_Spare", CharSet = CharSet.Unicode)]
    internal static extern int Box_getenum_Spare(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Box_setenum_Spare", CharSet = CharSet.Unicode)]
    internal static extern bool Box_setenum_Spare(HandleRef self, int value);
    [DllImport(Library, EntryPoint = Prefix + "Box_isset_Spare", CharSet = CharSet.Unicode)]
    internal static extern bool Box_isset_Spare(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Box_unset_Spare", CharSet = CharSet.Unicode)]
    internal static extern void Box_unset_Spare(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Box_get_Count", CharSet = CharSet.Unicode)]
    internal static extern uint Box_get_Count(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Box_set_Count", CharSet = CharSet.Unicode)]
    internal static extern int Box_set_Count(HandleRef self, uint value);
    [DllImport(Library, EntryPoint = Prefix + "Box_get_Code", CharSet = CharSet.Unicode)]
    internal static extern IntPtr Box_get_Code(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Box_set_Code", CharSet = CharSet.Unicode)]
    internal static extern int Box_set_Code(HandleRef self, string value);
    [DllImport(Library, EntryPoint = Prefix + "Box_get_Weight", CharSet = CharSet.Unicode)]
    internal static extern double Box_get_Weight(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Box_set_Weight", CharSet = CharSet.Unicode)]
    internal static extern int Box_set_Weight(HandleRef self, double value);
    [DllImport(Library, EntryPoint = Prefix + "new_Seal__SWIG_0", CharSet = CharSet.Unicode)]
    internal static extern IntPtr new_Seal__SWIG_0();
    [DllImport(Library, EntryPoint = Prefix + "new_Seal__SWIG_1", CharSet = CharSet.Unicode)]
    internal static extern IntPtr new_Seal__SWIG_1(HandleRef other);
    [DllImport(Library, EntryPoint = Prefix + "delete_Seal", CharSet = CharSet.Unicode)]
    internal static extern void delete_Seal(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Seal_swap", CharSet = CharSet.Unicode)]
    internal static extern void Seal_swap(HandleRef self, HandleRef other);
    [DllImport(Library, EntryPoint = Prefix + "Seal_reset", CharSet = CharSet.Unicode)]
    internal static extern void Seal_reset(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Seal_is_occurs_ok", CharSet = CharSet.Unicode)]
    internal static extern bool Seal_is_occurs_ok(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "new_Part__SWIG_0", CharSet = CharSet.Unicode)]
    internal static extern IntPtr new_Part__SWIG_0();
    [DllImport(Library, EntryPoint = Prefix + "new_Part__SWIG_1", CharSet = CharSet.Unicode)]
    internal static extern IntPtr new_Part__SWIG_1(HandleRef other);
    [DllImport(Library, EntryPoint = Prefix + "delete_Part", CharSet = CharSet.Unicode)]
    internal static extern void delete_Part(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Part_swap", CharSet = CharSet.Unicode)]
    internal static extern void Part_swap(HandleRef self, HandleRef other);
    [DllImport(Library, EntryPoint = Prefix + "Part_reset", CharSet = CharSet.Unicode)]
    internal static extern void Part_reset(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Part_is_occurs_ok", CharSet = CharSet.Unicode)]
    internal static extern bool Part_is_occurs_ok(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Part_get_Unit", CharSet = CharSet.Unicode)]
    internal static extern IntPtr Part_get_Unit(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Part_set_Unit", CharSet = CharSet.Unicode)]
    internal static extern int Part_set_Unit(HandleRef self, string value);
    [DllImport(Library, EntryPoint = Prefix + "Part_isset_Unit", CharSet = CharSet.Unicode)]
    internal static extern bool Part_isset_Unit(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Part_unset_Unit", CharSet = CharSet.Unicode)]
    internal static extern void Part_unset_Unit(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Part_get_Part", CharSet = CharSet.Unicode)]
    internal static extern IntPtr Part_get_Part(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Part_set_Part", CharSet = CharSet.Unicode)]
    internal static extern int Part_set_Part(HandleRef self, HandleRef value);
    [DllImport(Library, EntryPoint = Prefix + "Part_isset_Part", CharSet = CharSet.Unicode)]
    internal static extern bool Part_isset_Part(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Part_unset_Part", CharSet = CharSet.Unicode)]
    internal static extern void Part_unset_Part(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "new_PartChoice__SWIG_0", CharSet = CharSet.Unicode)]
    internal static extern IntPtr new_PartChoice__SWIG_0();
    [DllImport(Library, EntryPoint = Prefix + "new_PartChoice__SWIG_1", CharSet = CharSet.Unicode)]
    internal static extern IntPtr new_PartChoice__SWIG_1(HandleRef other);
    [DllImport(Library, EntryPoint = Prefix + "delete_PartChoice", CharSet = CharSet.Unicode)]
    internal static extern void delete_PartChoice(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "PartChoice_swap", CharSet = CharSet.Unicode)]
    internal static extern void PartChoice_swap(HandleRef self, HandleRef other);
    [DllImport(Library, EntryPoint = Prefix + "PartChoice_reset", CharSet = CharSet.Unicode)]
    internal static extern void PartChoice_reset(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "PartChoice_is_occurs_ok", CharSet = CharSet.Unicode)]
    internal static extern bool PartChoice_is_occurs_ok(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "PartChoice_getchosen", CharSet = CharSet.Unicode)]
    internal static extern int PartChoice_getchosen(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "PartChoice_get_Grade", CharSet = CharSet.Unicode)]
    internal static extern IntPtr PartChoice_get_Grade(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "PartChoice_set_Grade", CharSet = CharSet.Unicode)]
    internal static extern int PartChoice_set_Grade(HandleRef self, string value);
    [DllImport(Library, EntryPoint = Prefix + "PartChoice_getenum_Grade", CharSet = CharSet.Unicode)]
    internal static extern int PartChoice_getenum_Grade(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "PartChoice_setenum_Grade", CharSet = CharSet.Unicode)]
    internal static extern bool PartChoice_setenum_Grade(HandleRef self, int value);
    [DllImport(Library, EntryPoint = Prefix + "PartChoice_get_Text", CharSet = CharSet.Unicode)]
    internal static extern IntPtr PartChoice_get_Text(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "PartChoice_set_Text", CharSet = CharSet.Unicode)]
    internal static extern int PartChoice_set_Text(HandleRef self, string value);
    [DllImport(Library, EntryPoint = Prefix + "PartChoice_get_Amount", CharSet = CharSet.Unicode)]
    internal static extern double PartChoice_get_Amount(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "PartChoice_set_Amount", CharSet = CharSet.Unicode)]
    internal static extern int PartChoice_set_Amount(HandleRef self, double value);
    [DllImport(Library, EntryPoint = Prefix + "PartChoice_get_Number", CharSet = CharSet.Unicode)]
    internal static extern int PartChoice_get_Number(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "PartChoice_set_Number", CharSet = CharSet.Unicode)]
    internal static extern int PartChoice_set_Number(HandleRef self, int value);
    [DllImport(Library, EntryPoint = Prefix + "PartChoice_get_Box__SWIG_0", CharSet = CharSet.Unicode)]
    internal static extern IntPtr PartChoice_get_Box__SWIG_0(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "PartChoice_assign_Box", CharSet = CharSet.Unicode)]
    internal static extern int PartChoice_assign_Box(HandleRef self, HandleRef value);
    [DllImport(Library, EntryPoint = Prefix + "new_anon_Tag__SWIG_0", CharSet = CharSet.Unicode)]
    internal static extern IntPtr new_anon_Tag__SWIG_0();
    [DllImport(Library, EntryPoint = Prefix + "new_anon_Tag__SWIG_1", CharSet = CharSet.Unicode)]
    internal static extern IntPtr new_anon_Tag__SWIG_1(HandleRef other);
    [DllImport(Library, EntryPoint = Prefix + "delete_anon_Tag", CharSet = CharSet.Unicode)]
    internal static extern void delete_anon_Tag(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "anon_Tag_swap", CharSet = CharSet.Unicode)]
    internal static extern void anon_Tag_swap(HandleRef self, HandleRef other);
    [DllImport(Library, EntryPoint = Prefix + "anon_Tag_reset", CharSet = CharSet.Unicode)]
    internal static extern void anon_Tag_reset(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "anon_Tag_is_occurs_ok", CharSet = CharSet.Unicode)]
    internal static extern bool anon_Tag_is_occurs_ok(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "anon_Tag_getchosen", CharSet = CharSet.Unicode)]
    internal static extern int anon_Tag_getchosen(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "anon_Tag_get_TagText", CharSet = CharSet.Unicode)]
    internal static extern IntPtr anon_Tag_get_TagText(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "anon_Tag_set_TagText", CharSet = CharSet.Unicode)]
    internal static extern int anon_Tag_set_TagText(HandleRef self, string value);
    [DllImport(Library, EntryPoint = Prefix + "anon_Tag_get_TagNumber", CharSet = CharSet.Unicode)]
    internal static extern double anon_Tag_get_TagNumber(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "anon_Tag_set_TagNumber", CharSet = CharSet.Unicode)]
    internal static extern int anon_Tag_set_TagNumber(HandleRef self, double value);
    [DllImport(Library, EntryPoint = Prefix + "new_ShapeType__SWIG_0", CharSet = CharSet.Unicode)]
    internal static extern IntPtr new_ShapeType__SWIG_0();
    [DllImport(Library, EntryPoint = Prefix + "new_ShapeType__SWIG_1", CharSet = CharSet.Unicode)]
    internal static extern IntPtr new_ShapeType__SWIG_1(HandleRef other);
    [DllImport(Library, EntryPoint = Prefix + "delete_ShapeType", CharSet = CharSet.Unicode)]
    internal static extern void delete_ShapeType(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "ShapeType_swap", CharSet = CharSet.Unicode)]
    internal static extern void ShapeType_swap(HandleRef self, HandleRef other);
    [DllImport(Library, EntryPoint = Prefix + "ShapeType_reset", CharSet = CharSet.Unicode)]
    internal static extern void ShapeType_reset(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "ShapeType_is_occurs_ok", CharSet = CharSet.Unicode)]
    internal static extern bool ShapeType_is_occurs_ok(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "ShapeType_clone", CharSet = CharSet.Unicode)]
    internal static extern IntPtr ShapeType_clone(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "ShapeType_getid", CharSet = CharSet.Unicode)]
    internal static extern IntPtr ShapeType_getid(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "ShapeType_has_id", CharSet = CharSet.Unicode)]
    internal static extern bool ShapeType_has_id(HandleRef self, IntPtr identity);
    [DllImport(Library, EntryPoint = Prefix + "ShapeType_id_get", CharSet = CharSet.Unicode)]
    internal static extern IntPtr ShapeType_id_get();
    [DllImport(Library, EntryPoint = Prefix + "ShapeType_id_set", CharSet = CharSet.Unicode)]
    internal static extern void ShapeType_id_set(byte[] identity);
    [DllImport(Library, EntryPoint = Prefix + "ShapeType_factory", CharSet = CharSet.Unicode)]
    internal static extern IntPtr ShapeType_factory(int ns_id, byte[] type_name);
    [DllImport(Library, EntryPoint = Prefix + "ShapeType_get_Name", CharSet = CharSet.Unicode)]
    internal static extern IntPtr ShapeType_get_Name(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "ShapeType_set_Name", CharSet = CharSet.Unicode)]
    internal static extern int ShapeType_set_Name(HandleRef self, string value);
    [DllImport(Library, EntryPoint = Prefix + "ShapeType_isset_Name", CharSet = CharSet.Unicode)]
    internal static extern bool ShapeType_isset_Name(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "ShapeType_unset_Name", CharSet = CharSet.Unicode)]
    internal static extern void ShapeType_unset_Name(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "ShapeType_get_Choice__SWIG_0", CharSet = CharSet.Unicode)]
    internal static extern IntPtr ShapeType_get_Choice__SWIG_0(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "ShapeType_assign_Choice", CharSet = CharSet.Unicode)]
    internal static extern int ShapeType_assign_Choice(HandleRef self, HandleRef value);
    [DllImport(Library, EntryPoint = Prefix + "ShapeType_isset_Choice", CharSet = CharSet.Unicode)]
    internal static extern bool ShapeType_isset_Choice(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "ShapeType_unset_Choice", CharSet = CharSet.Unicode)]
    internal static extern void ShapeType_unset_Choice(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "new_RoundType__SWIG_0", CharSet = CharSet.Unicode)]
    internal static extern IntPtr new_RoundType__SWIG_0();
    [DllImport(Library, EntryPoint = Prefix + "new_RoundType__SWIG_1", CharSet = CharSet.Unicode)]
    internal static extern IntPtr new_RoundType__SWIG_1(HandleRef other);
    [DllImport(Library, EntryPoint = Prefix + "delete_RoundType", CharSet = CharSet.Unicode)]
    internal static extern void delete_RoundType(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "RoundTypeUpcast", CharSet = CharSet.Unicode)]
    internal static extern IntPtr RoundTypeUpcast(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "RoundType_swap", CharSet = CharSet.Unicode)]
    internal static extern void RoundType_swap(HandleRef self, HandleRef other);
    [DllImport(Library, EntryPoint = Prefix + "RoundType_reset", CharSet = CharSet.Unicode)]
    internal static extern void RoundType_reset(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "RoundType_is_occurs_ok", CharSet = CharSet.Unicode)]
    internal static extern bool RoundType_is_occurs_ok(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "RoundType_clone", CharSet = CharSet.Unicode)]
    internal static extern IntPtr RoundType_clone(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "RoundType_getid", CharSet = CharSet.Unicode)]
    internal static extern IntPtr RoundType_getid(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "RoundType_has_id", CharSet = CharSet.Unicode)]
    internal static extern bool RoundType_has_id(HandleRef self, IntPtr identity);
    [DllImport(Library, EntryPoint = Prefix + "RoundType_id_get", CharSet = CharSet.Unicode)]
    internal static extern IntPtr RoundType_id_get();
    [DllImport(Library, EntryPoint = Prefix + "RoundType_id_set", CharSet = CharSet.Unicode)]
    internal static extern void RoundType_id_set(byte[] identity);
    [DllImport(Library, EntryPoint = Prefix + "RoundType_factory", CharSet = CharSet.Unicode)]
    internal static extern IntPtr RoundType_factory(int ns_id, byte[] type_name);
    [DllImport(Library, EntryPoint = Prefix + "RoundType_get_Radius", CharSet = CharSet.Unicode)]
    internal static extern double RoundType_get_Radius(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "RoundType_set_Radius", CharSet = CharSet.Unicode)]
    internal static extern int RoundType_set_Radius(HandleRef self, double value);
    [DllImport(Library, EntryPoint = Prefix + "new_RingType__SWIG_0", CharSet = CharSet.Unicode)]
    internal static extern IntPtr new_RingType__SWIG_0();
    [DllImport(Library, EntryPoint = Prefix + "new_RingType__SWIG_1", CharSet = CharSet.Unicode)]
    internal static extern IntPtr new_RingType__SWIG_1(HandleRef other);
    [DllImport(Library, EntryPoint = Prefix + "delete_RingType", CharSet = CharSet.Unicode)]
    internal static extern void delete_RingType(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "RingTypeUpcast", CharSet = CharSet.Unicode)]
    internal static extern IntPtr RingTypeUpcast(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "RingType_swap", CharSet = CharSet.Unicode)]
    internal static extern void RingType_swap(HandleRef self, HandleRef other);
    [DllImport(Library, EntryPoint = Prefix + "RingType_reset", CharSet = CharSet.Unicode)]
    internal static extern void RingType_reset(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "RingType_is_occurs_ok", CharSet = CharSet.Unicode)]
    internal static extern bool RingType_is_occurs_ok(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "RingType_clone", CharSet = CharSet.Unicode)]
    internal static extern IntPtr RingType_clone(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "RingType_getid", CharSet = CharSet.Unicode)]
    internal static extern IntPtr RingType_getid(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "RingType_has_id", CharSet = CharSet.Unicode)]
    internal static extern bool RingType_has_id(HandleRef self, IntPtr identity);
    [DllImport(Library, EntryPoint = Prefix + "RingType_id_get", CharSet = CharSet.Unicode)]
    internal static extern IntPtr RingType_id_get();
    [DllImport(Library, EntryPoint = Prefix + "RingType_id_set", CharSet = CharSet.Unicode)]
    internal static extern void RingType_id_set(byte[] identity);
    [DllImport(Library, EntryPoint = Prefix + "RingType_get_Inner", CharSet = CharSet.Unicode)]
    internal static extern double RingType_get_Inner(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "RingType_set_Inner", CharSet = CharSet.Unicode)]
    internal static extern int RingType_set_Inner(HandleRef self, double value);
    [DllImport(Library, EntryPoint = Prefix + "new_sg_Shape__SWIG_0", CharSet = CharSet.Unicode)]
    internal static extern IntPtr new_sg_Shape__SWIG_0();
    [DllImport(Library, EntryPoint = Prefix + "new_sg_Shape__SWIG_1", CharSet = CharSet.Unicode)]
    internal static extern IntPtr new_sg_Shape__SWIG_1(HandleRef other);
    [DllImport(Library, EntryPoint = Prefix + "delete_sg_Shape", CharSet = CharSet.Unicode)]
    internal static extern void delete_sg_Shape(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "sg_Shape_swap", CharSet = CharSet.Unicode)]
    internal static extern void sg_Shape_swap(HandleRef self, HandleRef other);
    [DllImport(Library, EntryPoint = Prefix + "sg_Shape_reset", CharSet = CharSet.Unicode)]
    internal static extern void sg_Shape_reset(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "sg_Shape_is_occurs_ok", CharSet = CharSet.Unicode)]
    internal static extern bool sg_Shape_is_occurs_ok(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "sg_Shape_getchosen", CharSet = CharSet.Unicode)]
    internal static extern int sg_Shape_getchosen(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "sg_Shape_get_Shape__SWIG_0", CharSet = CharSet.Unicode)]
    internal static extern IntPtr sg_Shape_get_Shape__SWIG_0(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "sg_Shape_assign_Shape__SWIG_0", CharSet = CharSet.Unicode)]
    internal static extern int sg_Shape_assign_Shape__SWIG_0(HandleRef self, HandleRef value);
    [DllImport(Library, EntryPoint = Prefix + "sg_Shape_get_Round__SWIG_0", CharSet = CharSet.Unicode)]
    internal static extern IntPtr sg_Shape_get_Round__SWIG_0(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "sg_Shape_assign_Round__SWIG_0", CharSet = CharSet.Unicode)]
    internal static extern int sg_Shape_assign_Round__SWIG_0(HandleRef self, HandleRef value);
    [DllImport(Library, EntryPoint = Prefix + "sg_Shape_get_Ring__SWIG_0", CharSet = CharSet.Unicode)]
    internal static extern IntPtr sg_Shape_get_Ring__SWIG_0(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "sg_Shape_assign_Ring", CharSet = CharSet.Unicode)]
    internal static extern int sg_Shape_assign_Ring(HandleRef self, HandleRef value);
    [DllImport(Library, EntryPoint = Prefix + "new_AnyShape__SWIG_0", CharSet = CharSet.Unicode)]
    internal static extern IntPtr new_AnyShape__SWIG_0();
    [DllImport(Library, EntryPoint = Prefix + "new_AnyShape__SWIG_1", CharSet = CharSet.Unicode)]
    internal static extern IntPtr new_AnyShape__SWIG_1(HandleRef other);
    [DllImport(Library, EntryPoint = Prefix + "delete_AnyShape", CharSet = CharSet.Unicode)]
    internal static extern void delete_AnyShape(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "AnyShapeUpcast", CharSet = CharSet.Unicode)]
    internal static extern IntPtr AnyShapeUpcast(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "new_Round__SWIG_0", CharSet = CharSet.Unicode)]
    internal static extern IntPtr new_Round__SWIG_0();
    [DllImport(Library, EntryPoint = Prefix + "new_Round__SWIG_1", CharSet = CharSet.Unicode)]
    internal static extern IntPtr new_Round__SWIG_1(HandleRef other);
    [DllImport(Library, EntryPoint = Prefix + "delete_Round", CharSet = CharSet.Unicode)]
    internal static extern void delete_Round(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "RoundUpcast", CharSet = CharSet.Unicode)]
    internal static extern IntPtr RoundUpcast(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Round_marshal__SWIG_0", CharSet = CharSet.Unicode)]
    internal static extern int Round_marshal__SWIG_0(HandleRef self, IntPtr writer);
    [DllImport(Library, EntryPoint = Prefix + "Round_unmarshal__SWIG_0", CharSet = CharSet.Unicode)]
    internal static extern int Round_unmarshal__SWIG_0(HandleRef self, IntPtr reader);
    [DllImport(Library, EntryPoint = Prefix + "Round_unmarshal__SWIG_1", CharSet = CharSet.Unicode)]
    internal static extern int Round_unmarshal__SWIG_1(HandleRef self, IntPtr reader, IntPtr name);
    [DllImport(Library, EntryPoint = Prefix + "Round_ns_map", CharSet = CharSet.Unicode)]
    internal static extern IntPtr Round_ns_map();
    [DllImport(Library, EntryPoint = Prefix + "new_Ring__SWIG_0", CharSet = CharSet.Unicode)]
    internal static extern IntPtr new_Ring__SWIG_0();
    [DllImport(Library, EntryPoint = Prefix + "new_Ring__SWIG_1", CharSet = CharSet.Unicode)]
    internal static extern IntPtr new_Ring__SWIG_1(HandleRef other);
    [DllImport(Library, EntryPoint = Prefix + "delete_Ring", CharSet = CharSet.Unicode)]
    internal static extern void delete_Ring(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "RingUpcast", CharSet = CharSet.Unicode)]
    internal static extern IntPtr RingUpcast(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Ring_swap", CharSet = CharSet.Unicode)]
    internal static extern void Ring_swap(HandleRef self, HandleRef other);
    [DllImport(Library, EntryPoint = Prefix + "Ring_reset", CharSet = CharSet.Unicode)]
    internal static extern void Ring_reset(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Ring_is_occurs_ok", CharSet = CharSet.Unicode)]
    internal static extern bool Ring_is_occurs_ok(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Ring_setnil_Ring", CharSet = CharSet.Unicode)]
    internal static extern void Ring_setnil_Ring(HandleRef self);
    [DllImport(Library, EntryPoint = Prefix + "Ring_isnil_Ring", CharSet = CharSet.Unicode)]
    internal static extern bool Ring_isnil_Ring(HandleRef self);
  }
}
