// Generated from model/schema and bridge/values.api by gen/emit_bridge.py: edit those, not this.
// The flat interface, for the managed client and for C. The conventions stand in
// conventions.h. A handle belongs to the client if the comment behind the function says so.
#pragma once

#include "bridge/conventions.h"

// Zol
ZOL_EXPORT void* ZOL_CALL _CSharp_new_Zol__SWIG_0(void);  // yours
ZOL_EXPORT void* ZOL_CALL _CSharp_new_Zol__SWIG_1(void* other);  // yours
ZOL_EXPORT void ZOL_CALL _CSharp_delete_Zol(void* self);
ZOL_EXPORT void ZOL_CALL _CSharp_Zol_swap(void* self, void* other);
ZOL_EXPORT void ZOL_CALL _CSharp_Zol_reset(void* self);
ZOL_EXPORT unsigned ZOL_CALL _CSharp_Zol_is_occurs_ok(void* self);
ZOL_EXPORT int ZOL_CALL _CSharp_Zol_marshal__SWIG_0(void* self, void* writer);
ZOL_EXPORT int ZOL_CALL _CSharp_Zol_unmarshal__SWIG_0(void* self, void* reader);
ZOL_EXPORT int ZOL_CALL _CSharp_Zol_unmarshal__SWIG_1(void* self, void* reader, void* name);
ZOL_EXPORT void* ZOL_CALL _CSharp_Zol_ns_map(void);
ZOL_EXPORT int ZOL_CALL _CSharp_Zol_loadFile(void* self, const char16_t* path);
ZOL_EXPORT int ZOL_CALL _CSharp_Zol_loadString(void* self, const char16_t* text);
ZOL_EXPORT int ZOL_CALL _CSharp_Zol_writeFile(void* self, const char16_t* path);
ZOL_EXPORT void* ZOL_CALL _CSharp_Zol_writeString(void* self);  // yours
ZOL_EXPORT char16_t* ZOL_CALL _CSharp_Zol_get_Note(void* self);
ZOL_EXPORT int ZOL_CALL _CSharp_Zol_set_Note(void* self, const char16_t* value);
ZOL_EXPORT void* ZOL_CALL _CSharp_Zol_get_Stamp(void* self, unsigned index);
ZOL_EXPORT int ZOL_CALL _CSharp_Zol_set_Stamp(void* self, unsigned index, void* value);
ZOL_EXPORT int ZOL_CALL _CSharp_Zol_append_Stamp(void* self, void* value);
ZOL_EXPORT int ZOL_CALL _CSharp_Zol_insert_Stamp(void* self, unsigned index, void* value);
ZOL_EXPORT void ZOL_CALL _CSharp_Zol_delete_Stamp(void* self, unsigned index);
ZOL_EXPORT void ZOL_CALL _CSharp_Zol_clear_Stamp(void* self);
ZOL_EXPORT unsigned ZOL_CALL _CSharp_Zol_size_Stamp(void* self);
ZOL_EXPORT char16_t* ZOL_CALL _CSharp_Zol_get_Alias(void* self, unsigned index);
ZOL_EXPORT int ZOL_CALL _CSharp_Zol_set_Alias(void* self, unsigned index, const char16_t* value);
ZOL_EXPORT int ZOL_CALL _CSharp_Zol_append_Alias(void* self, const char16_t* value);
ZOL_EXPORT int ZOL_CALL _CSharp_Zol_insert_Alias(void* self, unsigned index, const char16_t* value);
ZOL_EXPORT void ZOL_CALL _CSharp_Zol_delete_Alias(void* self, unsigned index);
ZOL_EXPORT void ZOL_CALL _CSharp_Zol_clear_Alias(void* self);
ZOL_EXPORT unsigned ZOL_CALL _CSharp_Zol_size_Alias(void* self);
ZOL_EXPORT unsigned ZOL_CALL _CSharp_Zol_get_Size(void* self);
ZOL_EXPORT int ZOL_CALL _CSharp_Zol_set_Size(void* self, unsigned value);
ZOL_EXPORT unsigned ZOL_CALL _CSharp_Zol_isset_Size(void* self);
ZOL_EXPORT void ZOL_CALL _CSharp_Zol_unset_Size(void* self);
ZOL_EXPORT void* ZOL_CALL _CSharp_Zol_get_Box__SWIG_0(void* self);
ZOL_EXPORT int ZOL_CALL _CSharp_Zol_assign_Box(void* self, void* value);
ZOL_EXPORT void* ZOL_CALL _CSharp_Zol_get_Lid__SWIG_0(void* self);
ZOL_EXPORT int ZOL_CALL _CSharp_Zol_assign_Lid(void* self, void* value);
ZOL_EXPORT unsigned ZOL_CALL _CSharp_Zol_isset_Lid(void* self);
ZOL_EXPORT void ZOL_CALL _CSharp_Zol_unset_Lid(void* self);
ZOL_EXPORT void* ZOL_CALL _CSharp_Zol_get_Part__SWIG_0(void* self, unsigned index);
ZOL_EXPORT int ZOL_CALL _CSharp_Zol_assign_Part(void* self, unsigned index, void* value);
ZOL_EXPORT void* ZOL_CALL _CSharp_Zol_append_Part(void* self);
ZOL_EXPORT void* ZOL_CALL _CSharp_Zol_insert_Part(void* self, unsigned index);
ZOL_EXPORT void* ZOL_CALL _CSharp_Zol_back_Part(void* self);
ZOL_EXPORT void ZOL_CALL _CSharp_Zol_delete_Part(void* self, unsigned index);
ZOL_EXPORT void ZOL_CALL _CSharp_Zol_clear_Part(void* self);
ZOL_EXPORT unsigned ZOL_CALL _CSharp_Zol_size_Part(void* self);
ZOL_EXPORT void* ZOL_CALL _CSharp_Zol_get_Shape__SWIG_0(void* self, unsigned index);
ZOL_EXPORT int ZOL_CALL _CSharp_Zol_assign_Shape(void* self, unsigned index, void* value);
ZOL_EXPORT void* ZOL_CALL _CSharp_Zol_append_Shape(void* self);
ZOL_EXPORT void* ZOL_CALL _CSharp_Zol_insert_Shape(void* self, unsigned index);
ZOL_EXPORT void* ZOL_CALL _CSharp_Zol_back_Shape(void* self);
ZOL_EXPORT void ZOL_CALL _CSharp_Zol_delete_Shape(void* self, unsigned index);
ZOL_EXPORT void ZOL_CALL _CSharp_Zol_clear_Shape(void* self);
ZOL_EXPORT unsigned ZOL_CALL _CSharp_Zol_size_Shape(void* self);
ZOL_EXPORT void* ZOL_CALL _CSharp_Zol_get_Outline__SWIG_0(void* self);
ZOL_EXPORT int ZOL_CALL _CSharp_Zol_assign_Outline(void* self, void* value);
ZOL_EXPORT void* ZOL_CALL _CSharp_Zol_get_anon_Tag__SWIG_0(void* self);
ZOL_EXPORT int ZOL_CALL _CSharp_Zol_assign_anon_Tag(void* self, void* value);
ZOL_EXPORT void ZOL_CALL _CSharp_Zol_get_any(void* self, unsigned index, const char* full_name, const char* namespace_uri, const char* text);
ZOL_EXPORT int ZOL_CALL _CSharp_Zol_append_any(void* self, const char* text);
ZOL_EXPORT int ZOL_CALL _CSharp_Zol_insert_any(void* self, unsigned index, const char* text);
ZOL_EXPORT void ZOL_CALL _CSharp_Zol_delete_any(void* self, unsigned index);
ZOL_EXPORT void ZOL_CALL _CSharp_Zol_clear_any(void* self);
ZOL_EXPORT unsigned ZOL_CALL _CSharp_Zol_size_any(void* self);

// Box
ZOL_EXPORT void* ZOL_CALL _CSharp_new_Box__SWIG_0(void);  // yours
ZOL_EXPORT void* ZOL_CALL _CSharp_new_Box__SWIG_1(void* other);  // yours
ZOL_EXPORT void ZOL_CALL _CSharp_delete_Box(void* self);
ZOL_EXPORT void ZOL_CALL _CSharp_Box_swap(void* self, void* other);
ZOL_EXPORT void ZOL_CALL _CSharp_Box_reset(void* self);
ZOL_EXPORT unsigned ZOL_CALL _CSharp_Box_is_occurs_ok(void* self);
ZOL_EXPORT void ZOL_CALL _CSharp_Box_setnil_Box(void* self);
ZOL_EXPORT unsigned ZOL_CALL _CSharp_Box_isnil_Box(void* self);
ZOL_EXPORT char16_t* ZOL_CALL _CSharp_Box_get_Grade(void* self);
ZOL_EXPORT int ZOL_CALL _CSharp_Box_set_Grade(void* self, const char16_t* value);
ZOL_EXPORT int ZOL_CALL _CSharp_Box_getenum_Grade(void* self);
ZOL_EXPORT unsigned ZOL_CALL _CSharp_Box_setenum_Grade(void* self, int value);
ZOL_EXPORT char16_t* ZOL_CALL _CSharp_Box_get_Spare(void* self);
ZOL_EXPORT int ZOL_CALL _CSharp_Box_set_Spare(void* self, const char16_t* value);
ZOL_EXPORT int ZOL_CALL _CSharp_Box_getenum_Spare(void* self);
ZOL_EXPORT unsigned ZOL_CALL _CSharp_Box_setenum_Spare(void* self, int value);
ZOL_EXPORT unsigned ZOL_CALL _CSharp_Box_isset_Spare(void* self);
ZOL_EXPORT void ZOL_CALL _CSharp_Box_unset_Spare(void* self);
ZOL_EXPORT unsigned ZOL_CALL _CSharp_Box_get_Count(void* self);
ZOL_EXPORT int ZOL_CALL _CSharp_Box_set_Count(void* self, unsigned value);
ZOL_EXPORT char16_t* ZOL_CALL _CSharp_Box_get_Code(void* self);
ZOL_EXPORT int ZOL_CALL _CSharp_Box_set_Code(void* self, const char16_t* value);
ZOL_EXPORT double ZOL_CALL _CSharp_Box_get_Weight(void* self);
ZOL_EXPORT int ZOL_CALL _CSharp_Box_set_Weight(void* self, double value);

// Seal
ZOL_EXPORT void* ZOL_CALL _CSharp_new_Seal__SWIG_0(void);  // yours
ZOL_EXPORT void* ZOL_CALL _CSharp_new_Seal__SWIG_1(void* other);  // yours
ZOL_EXPORT void ZOL_CALL _CSharp_delete_Seal(void* self);
ZOL_EXPORT void ZOL_CALL _CSharp_Seal_swap(void* self, void* other);
ZOL_EXPORT void ZOL_CALL _CSharp_Seal_reset(void* self);
ZOL_EXPORT unsigned ZOL_CALL _CSharp_Seal_is_occurs_ok(void* self);

// Part
ZOL_EXPORT void* ZOL_CALL _CSharp_new_Part__SWIG_0(void);  // yours
ZOL_EXPORT void* ZOL_CALL _CSharp_new_Part__SWIG_1(void* other);  // yours
ZOL_EXPORT void ZOL_CALL _CSharp_delete_Part(void* self);
ZOL_EXPORT void ZOL_CALL _CSharp_Part_swap(void* self, void* other);
ZOL_EXPORT void ZOL_CALL _CSharp_Part_reset(void* self);
ZOL_EXPORT unsigned ZOL_CALL _CSharp_Part_is_occurs_ok(void* self);
ZOL_EXPORT char16_t* ZOL_CALL _CSharp_Part_get_Unit(void* self);
ZOL_EXPORT int ZOL_CALL _CSharp_Part_set_Unit(void* self, const char16_t* value);
ZOL_EXPORT unsigned ZOL_CALL _CSharp_Part_isset_Unit(void* self);
ZOL_EXPORT void ZOL_CALL _CSharp_Part_unset_Unit(void* self);
ZOL_EXPORT void* ZOL_CALL _CSharp_Part_get_Part(void* self);
ZOL_EXPORT int ZOL_CALL _CSharp_Part_set_Part(void* self, void* value);
ZOL_EXPORT unsigned ZOL_CALL _CSharp_Part_isset_Part(void* self);
ZOL_EXPORT void ZOL_CALL _CSharp_Part_unset_Part(void* self);

// PartChoice
ZOL_EXPORT void* ZOL_CALL _CSharp_new_PartChoice__SWIG_0(void);  // yours
ZOL_EXPORT void* ZOL_CALL _CSharp_new_PartChoice__SWIG_1(void* other);  // yours
ZOL_EXPORT void ZOL_CALL _CSharp_delete_PartChoice(void* self);
ZOL_EXPORT void ZOL_CALL _CSharp_PartChoice_swap(void* self, void* other);
ZOL_EXPORT void ZOL_CALL _CSharp_PartChoice_reset(void* self);
ZOL_EXPORT unsigned ZOL_CALL _CSharp_PartChoice_is_occurs_ok(void* self);
ZOL_EXPORT int ZOL_CALL _CSharp_PartChoice_getchosen(void* self);
ZOL_EXPORT char16_t* ZOL_CALL _CSharp_PartChoice_get_Grade(void* self);
ZOL_EXPORT int ZOL_CALL _CSharp_PartChoice_set_Grade(void* self, const char16_t* value);
ZOL_EXPORT int ZOL_CALL _CSharp_PartChoice_getenum_Grade(void* self);
ZOL_EXPORT unsigned ZOL_CALL _CSharp_PartChoice_setenum_Grade(void* self, int value);
ZOL_EXPORT char16_t* ZOL_CALL _CSharp_PartChoice_get_Text(void* self);
ZOL_EXPORT int ZOL_CALL _CSharp_PartChoice_set_Text(void* self, const char16_t* value);
ZOL_EXPORT double ZOL_CALL _CSharp_PartChoice_get_Amount(void* self);
ZOL_EXPORT int ZOL_CALL _CSharp_PartChoice_set_Amount(void* self, double value);
ZOL_EXPORT int ZOL_CALL _CSharp_PartChoice_get_Number(void* self);
ZOL_EXPORT int ZOL_CALL _CSharp_PartChoice_set_Number(void* self, int value);
ZOL_EXPORT void* ZOL_CALL _CSharp_PartChoice_get_Box__SWIG_0(void* self);
ZOL_EXPORT int ZOL_CALL _CSharp_PartChoice_assign_Box(void* self, void* value);

// anon_Tag
ZOL_EXPORT void* ZOL_CALL _CSharp_new_anon_Tag__SWIG_0(void);  // yours
ZOL_EXPORT void* ZOL_CALL _CSharp_new_anon_Tag__SWIG_1(void* other);  // yours
ZOL_EXPORT void ZOL_CALL _CSharp_delete_anon_Tag(void* self);
ZOL_EXPORT void ZOL_CALL _CSharp_anon_Tag_swap(void* self, void* other);
ZOL_EXPORT void ZOL_CALL _CSharp_anon_Tag_reset(void* self);
ZOL_EXPORT unsigned ZOL_CALL _CSharp_anon_Tag_is_occurs_ok(void* self);
ZOL_EXPORT int ZOL_CALL _CSharp_anon_Tag_getchosen(void* self);
ZOL_EXPORT char16_t* ZOL_CALL _CSharp_anon_Tag_get_TagText(void* self);
ZOL_EXPORT int ZOL_CALL _CSharp_anon_Tag_set_TagText(void* self, const char16_t* value);
ZOL_EXPORT double ZOL_CALL _CSharp_anon_Tag_get_TagNumber(void* self);
ZOL_EXPORT int ZOL_CALL _CSharp_anon_Tag_set_TagNumber(void* self, double value);

// ShapeType
ZOL_EXPORT void* ZOL_CALL _CSharp_new_ShapeType__SWIG_0(void);  // yours
ZOL_EXPORT void* ZOL_CALL _CSharp_new_ShapeType__SWIG_1(void* other);  // yours
ZOL_EXPORT void ZOL_CALL _CSharp_delete_ShapeType(void* self);
ZOL_EXPORT void ZOL_CALL _CSharp_ShapeType_swap(void* self, void* other);
ZOL_EXPORT void ZOL_CALL _CSharp_ShapeType_reset(void* self);
ZOL_EXPORT unsigned ZOL_CALL _CSharp_ShapeType_is_occurs_ok(void* self);
ZOL_EXPORT void* ZOL_CALL _CSharp_ShapeType_clone(void* self);  // yours
ZOL_EXPORT const char* ZOL_CALL _CSharp_ShapeType_getid(void* self);
ZOL_EXPORT unsigned ZOL_CALL _CSharp_ShapeType_has_id(void* self, const char* identity);
ZOL_EXPORT const char* ZOL_CALL _CSharp_ShapeType_id_get(void);
ZOL_EXPORT void ZOL_CALL _CSharp_ShapeType_id_set(const char* identity);
ZOL_EXPORT void* ZOL_CALL _CSharp_ShapeType_factory(int ns_id, const char* type_name);  // yours
ZOL_EXPORT char16_t* ZOL_CALL _CSharp_ShapeType_get_Name(void* self);
ZOL_EXPORT int ZOL_CALL _CSharp_ShapeType_set_Name(void* self, const char16_t* value);
ZOL_EXPORT unsigned ZOL_CALL _CSharp_ShapeType_isset_Name(void* self);
ZOL_EXPORT void ZOL_CALL _CSharp_ShapeType_unset_Name(void* self);
ZOL_EXPORT void* ZOL_CALL _CSharp_ShapeType_get_Choice__SWIG_0(void* self);
ZOL_EXPORT int ZOL_CALL _CSharp_ShapeType_assign_Choice(void* self, void* value);
ZOL_EXPORT unsigned ZOL_CALL _CSharp_ShapeType_isset_Choice(void* self);
ZOL_EXPORT void ZOL_CALL _CSharp_ShapeType_unset_Choice(void* self);

// RoundType
ZOL_EXPORT void* ZOL_CALL _CSharp_new_RoundType__SWIG_0(void);  // yours
ZOL_EXPORT void* ZOL_CALL _CSharp_new_RoundType__SWIG_1(void* other);  // yours
ZOL_EXPORT void ZOL_CALL _CSharp_delete_RoundType(void* self);
ZOL_EXPORT void* ZOL_CALL _CSharp_RoundTypeUpcast(void* self);
ZOL_EXPORT void ZOL_CALL _CSharp_RoundType_swap(void* self, void* other);
ZOL_EXPORT void ZOL_CALL _CSharp_RoundType_reset(void* self);
ZOL_EXPORT unsigned ZOL_CALL _CSharp_RoundType_is_occurs_ok(void* self);
ZOL_EXPORT void* ZOL_CALL _CSharp_RoundType_clone(void* self);  // yours
ZOL_EXPORT const char* ZOL_CALL _CSharp_RoundType_getid(void* self);
ZOL_EXPORT unsigned ZOL_CALL _CSharp_RoundType_has_id(void* self, const char* identity);
ZOL_EXPORT const char* ZOL_CALL _CSharp_RoundType_id_get(void);
ZOL_EXPORT void ZOL_CALL _CSharp_RoundType_id_set(const char* identity);
ZOL_EXPORT void* ZOL_CALL _CSharp_RoundType_factory(int ns_id, const char* type_name);  // yours
ZOL_EXPORT double ZOL_CALL _CSharp_RoundType_get_Radius(void* self);
ZOL_EXPORT int ZOL_CALL _CSharp_RoundType_set_Radius(void* self, double value);

// RingType
ZOL_EXPORT void* ZOL_CALL _CSharp_new_RingType__SWIG_0(void);  // yours
ZOL_EXPORT void* ZOL_CALL _CSharp_new_RingType__SWIG_1(void* other);  // yours
ZOL_EXPORT void ZOL_CALL _CSharp_delete_RingType(void* self);
ZOL_EXPORT void* ZOL_CALL _CSharp_RingTypeUpcast(void* self);
ZOL_EXPORT void ZOL_CALL _CSharp_RingType_swap(void* self, void* other);
ZOL_EXPORT void ZOL_CALL _CSharp_RingType_reset(void* self);
ZOL_EXPORT unsigned ZOL_CALL _CSharp_RingType_is_occurs_ok(void* self);
ZOL_EXPORT void* ZOL_CALL _CSharp_RingType_clone(void* self);  // yours
ZOL_EXPORT const char* ZOL_CALL _CSharp_RingType_getid(void* self);
ZOL_EXPORT unsigned ZOL_CALL _CSharp_RingType_has_id(void* self, const char* identity);
ZOL_EXPORT const char* ZOL_CALL _CSharp_RingType_id_get(void);
ZOL_EXPORT void ZOL_CALL _CSharp_RingType_id_set(const char* identity);
ZOL_EXPORT double ZOL_CALL _CSharp_RingType_get_Inner(void* self);
ZOL_EXPORT int ZOL_CALL _CSharp_RingType_set_Inner(void* self, double value);

// sg_Shape
ZOL_EXPORT void* ZOL_CALL _CSharp_new_sg_Shape__SWIG_0(void);  // yours
ZOL_EXPORT void* ZOL_CALL _CSharp_new_sg_Shape__SWIG_1(void* other);  // yours
ZOL_EXPORT void ZOL_CALL _CSharp_delete_sg_Shape(void* self);
ZOL_EXPORT void ZOL_CALL _CSharp_sg_Shape_swap(void* self, void* other);
ZOL_EXPORT void ZOL_CALL _CSharp_sg_Shape_reset(void* self);
ZOL_EXPORT unsigned ZOL_CALL _CSharp_sg_Shape_is_occurs_ok(void* self);
ZOL_EXPORT int ZOL_CALL _CSharp_sg_Shape_getchosen(void* self);
ZOL_EXPORT void* ZOL_CALL _CSharp_sg_Shape_get_Shape__SWIG_0(void* self);
ZOL_EXPORT int ZOL_CALL _CSharp_sg_Shape_assign_Shape__SWIG_0(void* self, void* value);
ZOL_EXPORT void* ZOL_CALL _CSharp_sg_Shape_get_Round__SWIG_0(void* self);
ZOL_EXPORT int ZOL_CALL _CSharp_sg_Shape_assign_Round__SWIG_0(void* self, void* value);
ZOL_EXPORT void* ZOL_CALL _CSharp_sg_Shape_get_Ring__SWIG_0(void* self);
ZOL_EXPORT int ZOL_CALL _CSharp_sg_Shape_assign_Ring(void* self, void* value);

// AnyShape
ZOL_EXPORT void* ZOL_CALL _CSharp_new_AnyShape__SWIG_0(void);  // yours
ZOL_EXPORT void* ZOL_CALL _CSharp_new_AnyShape__SWIG_1(void* other);  // yours
ZOL_EXPORT void ZOL_CALL _CSharp_delete_AnyShape(void* self);
ZOL_EXPORT void* ZOL_CALL _CSharp_AnyShapeUpcast(void* self);

// Round
ZOL_EXPORT void* ZOL_CALL _CSharp_new_Round__SWIG_0(void);  // yours
ZOL_EXPORT void* ZOL_CALL _CSharp_new_Round__SWIG_1(void* other);  // yours
ZOL_EXPORT void ZOL_CALL _CSharp_delete_Round(void* self);
ZOL_EXPORT void* ZOL_CALL _CSharp_RoundUpcast(void* self);
ZOL_EXPORT int ZOL_CALL _CSharp_Round_marshal__SWIG_0(void* self, void* writer);
ZOL_EXPORT int ZOL_CALL _CSharp_Round_unmarshal__SWIG_0(void* self, void* reader);
ZOL_EXPORT int ZOL_CALL _CSharp_Round_unmarshal__SWIG_1(void* self, void* reader, void* name);
ZOL_EXPORT void* ZOL_CALL _CSharp_Round_ns_map(void);

// Ring
ZOL_EXPORT void* ZOL_CALL _CSharp_new_Ring__SWIG_0(void);  // yours
ZOL_EXPORT void* ZOL_CALL _CSharp_new_Ring__SWIG_1(void* other);  // yours
ZOL_EXPORT void ZOL_CALL _CSharp_delete_Ring(void* self);
ZOL_EXPORT void* ZOL_CALL _CSharp_RingUpcast(void* self);
ZOL_EXPORT void ZOL_CALL _CSharp_Ring_swap(void* self, void* other);
ZOL_EXPORT void ZOL_CALL _CSharp_Ring_reset(void* self);
ZOL_EXPORT unsigned ZOL_CALL _CSharp_Ring_is_occurs_ok(void* self);
ZOL_EXPORT void ZOL_CALL _CSharp_Ring_setnil_Ring(void* self);
ZOL_EXPORT unsigned ZOL_CALL _CSharp_Ring_isnil_Ring(void* self);

// Registration
ZOL_EXPORT void ZOL_CALL _SWIGRegisterExceptionCallbacks_ZolModule(ExceptionCallback application, ExceptionCallback arithmetic, ExceptionCallback divide_by_zero, ExceptionCallback index_out_of_range, ExceptionCallback invalid_cast, ExceptionCallback invalid_operation, ExceptionCallback io, ExceptionCallback null_reference, ExceptionCallback out_of_memory, ExceptionCallback overflow, ExceptionCallback system);
ZOL_EXPORT void ZOL_CALL _SWIGRegisterExceptionArgumentCallbacks_ZolModule(ArgumentCallback argument, ArgumentCallback argument_null, ArgumentCallback argument_out_of_range);
ZOL_EXPORT void ZOL_CALL _SWIGRegisterStringCallback_ZolModule(StringCallback text);
