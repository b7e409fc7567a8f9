// Generated from model/schema/tiny.rows by gen/emit_bridge.py: edit those, not this.
#include <algorithm>
#include <string>

#include "bridge/bridge.h"
#include "bridge/zol_exports.h"
#include "lmx/reader.h"
#include "lmx/writer.h"
#include "model/Zol.h"

using namespace zol::bridge;
using namespace zol_v2;

// Zol

void* ZOL_CALL _CSharp_new_Zol__SWIG_0() {
  return new Zol;
}

void* ZOL_CALL _CSharp_new_Zol__SWIG_1(void* other) {
  if (is_null(other, "zol_v2::Zol const & type is null")) return nullptr;
  return new Zol(as<Zol>(other));
}

void ZOL_CALL _CSharp_delete_Zol(void* self) {
  delete static_cast<Zol*>(self);
}

void ZOL_CALL _CSharp_Zol_swap(void* self, void* other) {
  if (is_null(other, "zol_v2::Zol & type is null")) return;
  as<Zol>(self).swap(as<Zol>(other));
}

void ZOL_CALL _CSharp_Zol_reset(void* self) {
  as<Zol>(self).reset();
}

unsigned ZOL_CALL _CSharp_Zol_is_occurs_ok(void* self) {
  return as<Zol>(self).is_occurs_ok();
}

int ZOL_CALL _CSharp_Zol_marshal__SWIG_0(void* self, void* writer) {
  return as<Zol>(self).marshal(as<lmx::c_xml_writer>(writer), Zol::k_element_name);
}

int ZOL_CALL _CSharp_Zol_unmarshal__SWIG_0(void* self, void* reader) {
  return as<Zol>(self).unmarshal(as<lmx::c_xml_reader>(reader));
}

int ZOL_CALL _CSharp_Zol_unmarshal__SWIG_1(void* self, void* reader, void* name) {
  return as<Zol>(self).unmarshal(as<lmx::c_xml_reader>(reader), as<std::string>(name));
}

void* ZOL_CALL _CSharp_Zol_ns_map() {
  return handle_of(*Zol::ns_map());
}

int ZOL_CALL _CSharp_Zol_loadFile(void* self, const char16_t* path) {
  return as<Zol>(self).loadFile(wide(path));
}

int ZOL_CALL _CSharp_Zol_loadString(void* self, const char16_t* text) {
  return as<Zol>(self).loadString(wide(text));
}

int ZOL_CALL _CSharp_Zol_writeFile(void* self, const char16_t* path) {
  return as<Zol>(self).writeFile(wide(path));
}

void* ZOL_CALL _CSharp_Zol_writeString(void* self) {
  return new XMLDocumentResult(as<Zol>(self).writeString());
}

char16_t* ZOL_CALL _CSharp_Zol_get_Note(void* self) {
  return returned(as<Zol>(self).get_Note());
}

int ZOL_CALL _CSharp_Zol_set_Note(void* self, const char16_t* value) {
  return as<Zol>(self).set_Note(wide(value));
}

void* ZOL_CALL _CSharp_Zol_get_Stamp(void* self, unsigned index) {
  return handle_of(as<Zol>(self).get_Stamp(index));
}

int ZOL_CALL _CSharp_Zol_set_Stamp(void* self, unsigned index, void* value) {
  if (is_null(value, "lmx::tc_datetime const & type is null")) return 0;
  return as<Zol>(self).set_Stamp(index, as<lmx::tc_datetime>(value));
}

int ZOL_CALL _CSharp_Zol_append_Stamp(void* self, void* value) {
  if (is_null(value, "lmx::tc_datetime const & type is null")) return 0;
  return as<Zol>(self).append_Stamp(as<lmx::tc_datetime>(value));
}

int ZOL_CALL _CSharp_Zol_insert_Stamp(void* self, unsigned index, void* value) {
  if (is_null(value, "lmx::tc_datetime const & type is null")) return 0;
  return as<Zol>(self).insert_Stamp(index, as<lmx::tc_datetime>(value));
}

void ZOL_CALL _CSharp_Zol_delete_Stamp(void* self, unsigned index) {
  as<Zol>(self).delete_Stamp(index);
}

void ZOL_CALL _CSharp_Zol_clear_Stamp(void* self) {
  as<Zol>(self).clear_Stamp();
}

unsigned ZOL_CALL _CSharp_Zol_size_Stamp(void* self) {
  return as<Zol>(self).size_Stamp();
}

char16_t* ZOL_CALL _CSharp_Zol_get_Alias(void* self, unsigned index) {
  return returned(as<Zol>(self).get_Alias(index));
}

int ZOL_CALL _CSharp_Zol_set_Alias(void* self, unsigned index, const char16_t* value) {
  return as<Zol>(self).set_Alias(index, wide(value));
}

int ZOL_CALL _CSharp_Zol_append_Alias(void* self, const char16_t* value) {
  return as<Zol>(self).append_Alias(wide(value));
}

int ZOL_CALL _CSharp_Zol_insert_Alias(void* self, unsigned index, const char16_t* value) {
  return as<Zol>(self).insert_Alias(index, wide(value));
}

void ZOL_CALL _CSharp_Zol_delete_Alias(void* self, unsigned index) {
  as<Zol>(self).delete_Alias(index);
}

void ZOL_CALL _CSharp_Zol_clear_Alias(void* self) {
  as<Zol>(self).clear_Alias();
}

unsigned ZOL_CALL _CSharp_Zol_size_Alias(void* self) {
  return as<Zol>(self).size_Alias();
}

unsigned ZOL_CALL _CSharp_Zol_get_Size(void* self) {
  return as<Zol>(self).get_Size();
}

int ZOL_CALL _CSharp_Zol_set_Size(void* self, unsigned value) {
  return as<Zol>(self).set_Size(value);
}

unsigned ZOL_CALL _CSharp_Zol_isset_Size(void* self) {
  return as<Zol>(self).isset_Size();
}

void ZOL_CALL _CSharp_Zol_unset_Size(void* self) {
  as<Zol>(self).unset_Size();
}

void* ZOL_CALL _CSharp_Zol_get_Box__SWIG_0(void* self) {
  return &as<Zol>(self).get_Box();
}

int ZOL_CALL _CSharp_Zol_assign_Box(void* self, void* value) {
  if (is_null(value, "zol_v2::Box const & type is null")) return 0;
  as<Zol>(self).assign_Box(as<Box>(value));
  return 0;
}

void* ZOL_CALL _CSharp_Zol_get_Lid__SWIG_0(void* self) {
  return &as<Zol>(self).get_Lid();
}

int ZOL_CALL _CSharp_Zol_assign_Lid(void* self, void* value) {
  if (is_null(value, "zol_v2::Box const & type is null")) return 0;
  as<Zol>(self).assign_Lid(as<Box>(value));
  return 0;
}

unsigned ZOL_CALL _CSharp_Zol_isset_Lid(void* self) {
  return as<Zol>(self).isset_Lid();
}

void ZOL_CALL _CSharp_Zol_unset_Lid(void* self) {
  as<Zol>(self).unset_Lid();
}

void* ZOL_CALL _CSharp_Zol_get_Part__SWIG_0(void* self, unsigned index) {
  return &as<Zol>(self).get_Part(index);
}

int ZOL_CALL _CSharp_Zol_assign_Part(void* self, unsigned index, void* value) {
  if (is_null(value, "zol_v2::Part const & type is null")) return 0;
  as<Zol>(self).assign_Part(index, as<Part>(value));
  return 0;
}

void* ZOL_CALL _CSharp_Zol_append_Part(void* self) {
  as<Zol>(self).append_Part();
  return &as<Zol>(self).back_Part();
}

void* ZOL_CALL _CSharp_Zol_insert_Part(void* self, unsigned index) {
  const unsigned at = std::min(index, as<Zol>(self).size_Part());
  as<Zol>(self).insert_Part(at);
  return &as<Zol>(self).get_Part(at);
}

void* ZOL_CALL _CSharp_Zol_back_Part(void* self) {
  return &as<Zol>(self).back_Part();
}

void ZOL_CALL _CSharp_Zol_delete_Part(void* self, unsigned index) {
  as<Zol>(self).delete_Part(index);
}

void ZOL_CALL _CSharp_Zol_clear_Part(void* self) {
  as<Zol>(self).clear_Part();
}

unsigned ZOL_CALL _CSharp_Zol_size_Part(void* self) {
  return as<Zol>(self).size_Part();
}

void* ZOL_CALL _CSharp_Zol_get_Shape__SWIG_0(void* self, unsigned index) {
  return &as<Zol>(self).get_Shape(index);
}

int ZOL_CALL _CSharp_Zol_assign_Shape(void* self, unsigned index, void* value) {
  if (is_null(value, "zol_v2::sg_Shape const & type is null")) return 0;
  as<Zol>(self).assign_Shape(index, as<sg_Shape>(value));
  return 0;
}

void* ZOL_CALL _CSharp_Zol_append_Shape(void* self) {
  as<Zol>(self).append_Shape();
  return &as<Zol>(self).back_Shape();
}

void* ZOL_CALL _CSharp_Zol_insert_Shape(void* self, unsigned index) {
  const unsigned at = std::min(index, as<Zol>(self).size_Shape());
  as<Zol>(self).insert_Shape(at);
  return &as<Zol>(self).get_Shape(at);
}

void* ZOL_CALL _CSharp_Zol_back_Shape(void* self) {
  return &as<Zol>(self).back_Shape();
}

void ZOL_CALL _CSharp_Zol_delete_Shape(void* self, unsigned index) {
  as<Zol>(self).delete_Shape(index);
}

void ZOL_CALL _CSharp_Zol_clear_Shape(void* self) {
  as<Zol>(self).clear_Shape();
}

unsigned ZOL_CALL _CSharp_Zol_size_Shape(void* self) {
  return as<Zol>(self).size_Shape();
}

void* ZOL_CALL _CSharp_Zol_get_Outline__SWIG_0(void* self) {
  return &as<Zol>(self).get_Outline();
}

int ZOL_CALL _CSharp_Zol_assign_Outline(void* self, void* value) {
  if (is_null(value, "zol_v2::sg_Shape const & type is null")) return 0;
  as<Zol>(self).assign_Outline(as<sg_Shape>(value));
  return 0;
}

void* ZOL_CALL _CSharp_Zol_get_anon_Tag__SWIG_0(void* self) {
  return &as<Zol>(self).get_anon_Tag();
}

int ZOL_CALL _CSharp_Zol_assign_anon_Tag(void* self, void* value) {
  if (is_null(value, "zol_v2::anon_Tag const & type is null")) return 0;
  as<Zol>(self).assign_anon_Tag(as<anon_Tag>(value));
  return 0;
}

void ZOL_CALL _CSharp_Zol_get_any(void* self, unsigned index, const char* full_name, const char* namespace_uri, const char* text) {
  if (is_null(full_name, "null string")) return;
  if (is_null(namespace_uri, "null string")) return;
  if (is_null(text, "null string")) return;
  std::string out[] = {full_name, namespace_uri, text};
  as<Zol>(self).get_any(index, &out[0], &out[1], &out[2]);
}

int ZOL_CALL _CSharp_Zol_append_any(void* self, const char* text) {
  if (is_null(text, "null string")) return 0;
  return as<Zol>(self).append_any(text);
}

int ZOL_CALL _CSharp_Zol_insert_any(void* self, unsigned index, const char* text) {
  if (is_null(text, "null string")) return 0;
  return as<Zol>(self).insert_any(index, text);
}

void ZOL_CALL _CSharp_Zol_delete_any(void* self, unsigned index) {
  as<Zol>(self).delete_any(index);
}

void ZOL_CALL _CSharp_Zol_clear_any(void* self) {
  as<Zol>(self).clear_any();
}

unsigned ZOL_CALL _CSharp_Zol_size_any(void* self) {
  return as<Zol>(self).size_any();
}

// Box

void* ZOL_CALL _CSharp_new_Box__SWIG_0() {
  return new Box;
}

void* ZOL_CALL _CSharp_new_Box__SWIG_1(void* other) {
  if (is_null(other, "zol_v2::Box const & type is null")) return nullptr;
  return new Box(as<Box>(other));
}

void ZOL_CALL _CSharp_delete_Box(void* self) {
  delete static_cast<Box*>(self);
}

void ZOL_CALL _CSharp_Box_swap(void* self, void* other) {
  if (is_null(other, "zol_v2::Box & type is null")) return;
  as<Box>(self).swap(as<Box>(other));
}

void ZOL_CALL _CSharp_Box_reset(void* self) {
  as<Box>(self).reset();
}

unsigned ZOL_CALL _CSharp_Box_is_occurs_ok(void* self) {
  return as<Box>(self).is_occurs_ok();
}

void ZOL_CALL _CSharp_Box_setnil_Box(void* self) {
  as<Box>(self).setnil_Box();
}

unsigned ZOL_CALL _CSharp_Box_isnil_Box(void* self) {
  return as<Box>(self).isnil_Box();
}

char16_t* ZOL_CALL _CSharp_Box_get_Grade(void* self) {
  return returned(as<Box>(self).get_Grade());
}

int ZOL_CALL _CSharp_Box_set_Grade(void* self, const char16_t* value) {
  return as<Box>(self).set_Grade(wide(value));
}

int ZOL_CALL _CSharp_Box_getenum_Grade(void* self) {
  return as<Box>(self).getenum_Grade();
}

unsigned ZOL_CALL _CSharp_Box_setenum_Grade(void* self, int value) {
  return as<Box>(self).setenum_Grade(static_cast<Box::Eenum_Grade>(value));
}

char16_t* ZOL_CALL _CSharp_Box_get_Spare(void* self) {
  return returned(as<Box>(self).get_Spare());
}

int ZOL_CALL _CSharp_Box_set_Spare(void* self, const char16_t* value) {
  return as<Box>(self).set_Spare(wide(value));
}

int ZOL_CALL _CSharp_Box_getenum_Spare(void* self) {
  return as<Box>(self).getenum_Spare();
}

unsigned ZOL_CALL _CSharp_Box_setenum_Spare(void* self, int value) {
  return as<Box>(self).setenum_Spare(static_cast<Box::Eenum_Spare>(value));
}

unsigned ZOL_CALL _CSharp_Box_isset_Spare(void* self) {
  return as<Box>(self).isset_Spare();
}

void ZOL_CALL _CSharp_Box_unset_Spare(void* self) {
  as<Box>(self).unset_Spare();
}

unsigned ZOL_CALL _CSharp_Box_get_Count(void* self) {
  return as<Box>(self).get_Count();
}

int ZOL_CALL _CSharp_Box_set_Count(void* self, unsigned value) {
  return as<Box>(self).set_Count(static_cast<unsigned char>(value));
}

char16_t* ZOL_CALL _CSharp_Box_get_Code(void* self) {
  return returned(as<Box>(self).get_Code());
}

int ZOL_CALL _CSharp_Box_set_Code(void* self, const char16_t* value) {
  return as<Box>(self).set_Code(wide(value));
}

double ZOL_CALL _CSharp_Box_get_Weight(void* self) {
  return as<Box>(self).get_Weight();
}

int ZOL_CALL _CSharp_Box_set_Weight(void* self, double value) {
  return as<Box>(self).set_Weight(value);
}

// Seal

void* ZOL_CALL _CSharp_new_Seal__SWIG_0() {
  return new Seal;
}

void* ZOL_CALL _CSharp_new_Seal__SWIG_1(void* other) {
  if (is_null(other, "zol_v2::Seal const & type is null")) return nullptr;
  return new Seal(as<Seal>(other));
}

void ZOL_CALL _CSharp_delete_Seal(void* self) {
  delete static_cast<Seal*>(self);
}

void ZOL_CALL _CSharp_Seal_swap(void* self, void* other) {
  if (is_null(other, "zol_v2::Seal & type is null")) return;
  as<Seal>(self).swap(as<Seal>(other));
}

void ZOL_CALL _CSharp_Seal_reset(void* self) {
  as<Seal>(self).reset();
}

unsigned ZOL_CALL _CSharp_Seal_is_occurs_ok(void* self) {
  return as<Seal>(self).is_occurs_ok();
}

// Part

void* ZOL_CALL _CSharp_new_Part__SWIG_0() {
  return new Part;
}

void* ZOL_CALL _CSharp_new_Part__SWIG_1(void* other) {
  if (is_null(other, "zol_v2::Part const & type is null")) return nullptr;
  return new Part(as<Part>(other));
}

void ZOL_CALL _CSharp_delete_Part(void* self) {
  delete static_cast<Part*>(self);
}

void ZOL_CALL _CSharp_Part_swap(void* self, void* other) {
  if (is_null(other, "zol_v2::Part & type is null")) return;
  as<Part>(self).swap(as<Part>(other));
}

void ZOL_CALL _CSharp_Part_reset(void* self) {
  as<Part>(self).reset();
}

unsigned ZOL_CALL _CSharp_Part_is_occurs_ok(void* self) {
  return as<Part>(self).is_occurs_ok();
}

char16_t* ZOL_CALL _CSharp_Part_get_Unit(void* self) {
  return returned(as<Part>(self).get_Unit());
}

int ZOL_CALL _CSharp_Part_set_Unit(void* self, const char16_t* value) {
  return as<Part>(self).set_Unit(wide(value));
}

unsigned ZOL_CALL _CSharp_Part_isset_Unit(void* self) {
  return as<Part>(self).isset_Unit();
}

void ZOL_CALL _CSharp_Part_unset_Unit(void* self) {
  as<Part>(self).unset_Unit();
}

void* ZOL_CALL _CSharp_Part_get_Part(void* self) {
  return handle_of(as<Part>(self).get_Part());
}

int ZOL_CALL _CSharp_Part_set_Part(void* self, void* value) {
  if (is_null(value, "lmx::tc_binary const & type is null")) return 0;
  return as<Part>(self).set_Part(as<lmx::tc_binary>(value));
}

unsigned ZOL_CALL _CSharp_Part_isset_Part(void* self) {
  return as<Part>(self).isset_Part();
}

void ZOL_CALL _CSharp_Part_unset_Part(void* self) {
  as<Part>(self).unset_Part();
}

// PartChoice

void* ZOL_CALL _CSharp_new_PartChoice__SWIG_0() {
  return new PartChoice;
}

void* ZOL_CALL _CSharp_new_PartChoice__SWIG_1(void* other) {
  if (is_null(other, "zol_v2::PartChoice const & type is null")) return nullptr;
  return new PartChoice(as<PartChoice>(other));
}

void ZOL_CALL _CSharp_delete_PartChoice(void* self) {
  delete static_cast<PartChoice*>(self);
}

void ZOL_CALL _CSharp_PartChoice_swap(void* self, void* other) {
  if (is_null(other, "zol_v2::PartChoice & type is null")) return;
  as<PartChoice>(self).swap(as<PartChoice>(other));
}

void ZOL_CALL _CSharp_PartChoice_reset(void* self) {
  as<PartChoice>(self).reset();
}

unsigned ZOL_CALL _CSharp_PartChoice_is_occurs_ok(void* self) {
  return as<PartChoice>(self).is_occurs_ok();
}

int ZOL_CALL _CSharp_PartChoice_getchosen(void* self) {
  return as<PartChoice>(self).getchosen();
}

char16_t* ZOL_CALL _CSharp_PartChoice_get_Grade(void* self) {
  return returned(as<PartChoice>(self).get_Grade());
}

int ZOL_CALL _CSharp_PartChoice_set_Grade(void* self, const char16_t* value) {
  return as<PartChoice>(self).set_Grade(wide(value));
}

int ZOL_CALL _CSharp_PartChoice_getenum_Grade(void* self) {
  return as<PartChoice>(self).getenum_Grade();
}

unsigned ZOL_CALL _CSharp_PartChoice_setenum_Grade(void* self, int value) {
  return as<PartChoice>(self).setenum_Grade(static_cast<PartChoice::Eenum_Grade>(value));
}

char16_t* ZOL_CALL _CSharp_PartChoice_get_Text(void* self) {
  return returned(as<PartChoice>(self).get_Text());
}

int ZOL_CALL _CSharp_PartChoice_set_Text(void* self, const char16_t* value) {
  return as<PartChoice>(self).set_Text(wide(value));
}

double ZOL_CALL _CSharp_PartChoice_get_Amount(void* self) {
  return as<PartChoice>(self).get_Amount();
}

int ZOL_CALL _CSharp_PartChoice_set_Amount(void* self, double value) {
  return as<PartChoice>(self).set_Amount(value);
}

int ZOL_CALL _CSharp_PartChoice_get_Number(void* self) {
  return as<PartChoice>(self).get_Number();
}

int ZOL_CALL _CSharp_PartChoice_set_Number(void* self, int value) {
  return as<PartChoice>(self).set_Number(value);
}

void* ZOL_CALL _CSharp_PartChoice_get_Box__SWIG_0(void* self) {
  return &as<PartChoice>(self).get_Box();
}

int ZOL_CALL _CSharp_PartChoice_assign_Box(void* self, void* value) {
  if (is_null(value, "zol_v2::Box const & type is null")) return 0;
  as<PartChoice>(self).assign_Box(as<Box>(value));
  return 0;
}

// anon_Tag

void* ZOL_CALL _CSharp_new_anon_Tag__SWIG_0() {
  return new anon_Tag;
}

void* ZOL_CALL _CSharp_new_anon_Tag__SWIG_1(void* other) {
  if (is_null(other, "zol_v2::anon_Tag const & type is null")) return nullptr;
  return new anon_Tag(as<anon_Tag>(other));
}

void ZOL_CALL _CSharp_delete_anon_Tag(void* self) {
  delete static_cast<anon_Tag*>(self);
}

void ZOL_CALL _CSharp_anon_Tag_swap(void* self, void* other) {
  if (is_null(other, "zol_v2::anon_Tag & type is null")) return;
  as<anon_Tag>(self).swap(as<anon_Tag>(other));
}

void ZOL_CALL _CSharp_anon_Tag_reset(void* self) {
  as<anon_Tag>(self).reset();
}

unsigned ZOL_CALL _CSharp_anon_Tag_is_occurs_ok(void* self) {
  return as<anon_Tag>(self).is_occurs_ok();
}

int ZOL_CALL _CSharp_anon_Tag_getchosen(void* self) {
  return as<anon_Tag>(self).getchosen();
}

char16_t* ZOL_CALL _CSharp_anon_Tag_get_TagText(void* self) {
  return returned(as<anon_Tag>(self).get_TagText());
}

int ZOL_CALL _CSharp_anon_Tag_set_TagText(void* self, const char16_t* value) {
  return as<anon_Tag>(self).set_TagText(wide(value));
}

double ZOL_CALL _CSharp_anon_Tag_get_TagNumber(void* self) {
  return as<anon_Tag>(self).get_TagNumber();
}

int ZOL_CALL _CSharp_anon_Tag_set_TagNumber(void* self, double value) {
  return as<anon_Tag>(self).set_TagNumber(value);
}

// ShapeType

void* ZOL_CALL _CSharp_new_ShapeType__SWIG_0() {
  return new ShapeType;
}

void* ZOL_CALL _CSharp_new_ShapeType__SWIG_1(void* other) {
  if (is_null(other, "zol_v2::ShapeType const & type is null")) return nullptr;
  return new ShapeType(as<ShapeType>(other));
}

void ZOL_CALL _CSharp_delete_ShapeType(void* self) {
  delete static_cast<ShapeType*>(self);
}

void ZOL_CALL _CSharp_ShapeType_swap(void* self, void* other) {
  if (is_null(other, "zol_v2::ShapeType & type is null")) return;
  as<ShapeType>(self).swap(as<ShapeType>(other));
}

void ZOL_CALL _CSharp_ShapeType_reset(void* self) {
  as<ShapeType>(self).reset();
}

unsigned ZOL_CALL _CSharp_ShapeType_is_occurs_ok(void* self) {
  return as<ShapeType>(self).is_occurs_ok();
}

void* ZOL_CALL _CSharp_ShapeType_clone(void* self) {
  return as<ShapeType>(self).clone();
}

const char* ZOL_CALL _CSharp_ShapeType_getid(void* self) {
  return as<ShapeType>(self).getid();
}

unsigned ZOL_CALL _CSharp_ShapeType_has_id(void* self, const char* identity) {
  return as<ShapeType>(self).has_id(identity);
}

const char* ZOL_CALL _CSharp_ShapeType_id_get() {
  return ShapeType::id;
}

void ZOL_CALL _CSharp_ShapeType_id_set(const char* identity) {
  ShapeType::id = kept_for_ever(identity);
}

void* ZOL_CALL _CSharp_ShapeType_factory(int ns_id, const char* type_name) {
  if (is_null(type_name, "null string")) return nullptr;
  return ShapeType::factory(ns_id, type_name);
}

char16_t* ZOL_CALL _CSharp_ShapeType_get_Name(void* self) {
  return returned(as<ShapeType>(self).get_Name());
}

int ZOL_CALL _CSharp_ShapeType_set_Name(void* self, const char16_t* value) {
  return as<ShapeType>(self).set_Name(wide(value));
}

unsigned ZOL_CALL _CSharp_ShapeType_isset_Name(void* self) {
  return as<ShapeType>(self).isset_Name();
}

void ZOL_CALL _CSharp_ShapeType_unset_Name(void* self) {
  as<ShapeType>(self).unset_Name();
}

void* ZOL_CALL _CSharp_ShapeType_get_Choice__SWIG_0(void* self) {
  return &as<ShapeType>(self).get_Choice();
}

int ZOL_CALL _CSharp_ShapeType_assign_Choice(void* self, void* value) {
  if (is_null(value, "zol_v2::PartChoice const & type is null")) return 0;
  as<ShapeType>(self).assign_Choice(as<PartChoice>(value));
  return 0;
}

unsigned ZOL_CALL _CSharp_ShapeType_isset_Choice(void* self) {
  return as<ShapeType>(self).isset_Choice();
}

void ZOL_CALL _CSharp_ShapeType_unset_Choice(void* self) {
  as<ShapeType>(self).unset_Choice();
}

// RoundType

void* ZOL_CALL _CSharp_new_RoundType__SWIG_0() {
  return new RoundType;
}

void* ZOL_CALL _CSharp_new_RoundType__SWIG_1(void* other) {
  if (is_null(other, "zol_v2::RoundType const & type is null")) return nullptr;
  return new RoundType(as<RoundType>(other));
}

void ZOL_CALL _CSharp_delete_RoundType(void* self) {
  delete static_cast<RoundType*>(self);
}

void* ZOL_CALL _CSharp_RoundTypeUpcast(void* self) {
  return static_cast<ShapeType*>(&as<RoundType>(self));
}

void ZOL_CALL _CSharp_RoundType_swap(void* self, void* other) {
  if (is_null(other, "zol_v2::RoundType & type is null")) return;
  as<RoundType>(self).swap(as<RoundType>(other));
}

void ZOL_CALL _CSharp_RoundType_reset(void* self) {
  as<RoundType>(self).reset();
}

unsigned ZOL_CALL _CSharp_RoundType_is_occurs_ok(void* self) {
  return as<RoundType>(self).is_occurs_ok();
}

void* ZOL_CALL _CSharp_RoundType_clone(void* self) {
  return as<RoundType>(self).clone();
}

const char* ZOL_CALL _CSharp_RoundType_getid(void* self) {
  return as<RoundType>(self).getid();
}

unsigned ZOL_CALL _CSharp_RoundType_has_id(void* self, const char* identity) {
  return as<RoundType>(self).has_id(identity);
}

const char* ZOL_CALL _CSharp_RoundType_id_get() {
  return RoundType::id;
}

void ZOL_CALL _CSharp_RoundType_id_set(const char* identity) {
  RoundType::id = kept_for_ever(identity);
}

void* ZOL_CALL _CSharp_RoundType_factory(int ns_id, const char* type_name) {
  if (is_null(type_name, "null string")) return nullptr;
  return RoundType::factory(ns_id, type_name);
}

double ZOL_CALL _CSharp_RoundType_get_Radius(void* self) {
  return as<RoundType>(self).get_Radius();
}

int ZOL_CALL _CSharp_RoundType_set_Radius(void* self, double value) {
  return as<RoundType>(self).set_Radius(value);
}

// RingType

void* ZOL_CALL _CSharp_new_RingType__SWIG_0() {
  return new RingType;
}

void* ZOL_CALL _CSharp_new_RingType__SWIG_1(void* other) {
  if (is_null(other, "zol_v2::RingType const & type is null")) return nullptr;
  return new RingType(as<RingType>(other));
}

void ZOL_CALL _CSharp_delete_RingType(void* self) {
  delete static_cast<RingType*>(self);
}

void* ZOL_CALL _CSharp_RingTypeUpcast(void* self) {
  return static_cast<RoundType*>(&as<RingType>(self));
}

void ZOL_CALL _CSharp_RingType_swap(void* self, void* other) {
  if (is_null(other, "zol_v2::RingType & type is null")) return;
  as<RingType>(self).swap(as<RingType>(other));
}

void ZOL_CALL _CSharp_RingType_reset(void* self) {
  as<RingType>(self).reset();
}

unsigned ZOL_CALL _CSharp_RingType_is_occurs_ok(void* self) {
  return as<RingType>(self).is_occurs_ok();
}

void* ZOL_CALL _CSharp_RingType_clone(void* self) {
  return as<RingType>(self).clone();
}

const char* ZOL_CALL _CSharp_RingType_getid(void* self) {
  return as<RingType>(self).getid();
}

unsigned ZOL_CALL _CSharp_RingType_has_id(void* self, const char* identity) {
  return as<RingType>(self).has_id(identity);
}

const char* ZOL_CALL _CSharp_RingType_id_get() {
  return RingType::id;
}

void ZOL_CALL _CSharp_RingType_id_set(const char* identity) {
  RingType::id = kept_for_ever(identity);
}

double ZOL_CALL _CSharp_RingType_get_Inner(void* self) {
  return as<RingType>(self).get_Inner();
}

int ZOL_CALL _CSharp_RingType_set_Inner(void* self, double value) {
  return as<RingType>(self).set_Inner(value);
}

// sg_Shape

void* ZOL_CALL _CSharp_new_sg_Shape__SWIG_0() {
  return new sg_Shape;
}

void* ZOL_CALL _CSharp_new_sg_Shape__SWIG_1(void* other) {
  if (is_null(other, "zol_v2::sg_Shape const & type is null")) return nullptr;
  return new sg_Shape(as<sg_Shape>(other));
}

void ZOL_CALL _CSharp_delete_sg_Shape(void* self) {
  delete static_cast<sg_Shape*>(self);
}

void ZOL_CALL _CSharp_sg_Shape_swap(void* self, void* other) {
  if (is_null(other, "zol_v2::sg_Shape & type is null")) return;
  as<sg_Shape>(self).swap(as<sg_Shape>(other));
}

void ZOL_CALL _CSharp_sg_Shape_reset(void* self) {
  as<sg_Shape>(self).reset();
}

unsigned ZOL_CALL _CSharp_sg_Shape_is_occurs_ok(void* self) {
  return as<sg_Shape>(self).is_occurs_ok();
}

int ZOL_CALL _CSharp_sg_Shape_getchosen(void* self) {
  return as<sg_Shape>(self).getchosen();
}

void* ZOL_CALL _CSharp_sg_Shape_get_Shape__SWIG_0(void* self) {
  return &as<sg_Shape>(self).get_Shape();
}

int ZOL_CALL _CSharp_sg_Shape_assign_Shape__SWIG_0(void* self, void* value) {
  if (is_null(value, "zol_v2::ShapeType const & type is null")) return 0;
  as<sg_Shape>(self).assign_Shape(as<ShapeType>(value));
  return 0;
}

void* ZOL_CALL _CSharp_sg_Shape_get_Round__SWIG_0(void* self) {
  return &as<sg_Shape>(self).get_Round();
}

int ZOL_CALL _CSharp_sg_Shape_assign_Round__SWIG_0(void* self, void* value) {
  if (is_null(value, "zol_v2::RoundType const & type is null")) return 0;
  as<sg_Shape>(self).assign_Round(as<RoundType>(value));
  return 0;
}

void* ZOL_CALL _CSharp_sg_Shape_get_Ring__SWIG_0(void* self) {
  return &as<sg_Shape>(self).get_Ring();
}

int ZOL_CALL _CSharp_sg_Shape_assign_Ring(void* self, void* value) {
  if (is_null(value, "zol_v2::RingType const & type is null")) return 0;
  as<sg_Shape>(self).assign_Ring(as<RingType>(value));
  return 0;
}

// AnyShape

void* ZOL_CALL _CSharp_new_AnyShape__SWIG_0() {
  return new AnyShape;
}

void* ZOL_CALL _CSharp_new_AnyShape__SWIG_1(void* other) {
  if (is_null(other, "zol_v2::AnyShape const & type is null")) return nullptr;
  return new AnyShape(as<AnyShape>(other));
}

void ZOL_CALL _CSharp_delete_AnyShape(void* self) {
  delete static_cast<AnyShape*>(self);
}

void* ZOL_CALL _CSharp_AnyShapeUpcast(void* self) {
  return static_cast<ShapeType*>(&as<AnyShape>(self));
}

// Round

void* ZOL_CALL _CSharp_new_Round__SWIG_0() {
  return new Round;
}

void* ZOL_CALL _CSharp_new_Round__SWIG_1(void* other) {
  if (is_null(other, "zol_v2::Round const & type is null")) return nullptr;
  return new Round(as<Round>(other));
}

void ZOL_CALL _CSharp_delete_Round(void* self) {
  delete static_cast<Round*>(self);
}

void* ZOL_CALL _CSharp_RoundUpcast(void* self) {
  return static_cast<RoundType*>(&as<Round>(self));
}

int ZOL_CALL _CSharp_Round_marshal__SWIG_0(void* self, void* writer) {
  return as<Round>(self).marshal(as<lmx::c_xml_writer>(writer), Round::k_element_name);
}

int ZOL_CALL _CSharp_Round_unmarshal__SWIG_0(void* self, void* reader) {
  return as<Round>(self).unmarshal(as<lmx::c_xml_reader>(reader));
}

int ZOL_CALL _CSharp_Round_unmarshal__SWIG_1(void* self, void* reader, void* name) {
  return as<Round>(self).unmarshal(as<lmx::c_xml_reader>(reader), as<std::string>(name));
}

void* ZOL_CALL _CSharp_Round_ns_map() {
  return handle_of(*Round::ns_map());
}

// Ring

void* ZOL_CALL _CSharp_new_Ring__SWIG_0() {
  return new Ring;
}

void* ZOL_CALL _CSharp_new_Ring__SWIG_1(void* other) {
  if (is_null(other, "zol_v2::Ring const & type is null")) return nullptr;
  return new Ring(as<Ring>(other));
}

void ZOL_CALL _CSharp_delete_Ring(void* self) {
  delete static_cast<Ring*>(self);
}

void* ZOL_CALL _CSharp_RingUpcast(void* self) {
  return static_cast<RingType*>(&as<Ring>(self));
}

void ZOL_CALL _CSharp_Ring_swap(void* self, void* other) {
  if (is_null(other, "zol_v2::Ring & type is null")) return;
  as<Ring>(self).swap(as<Ring>(other));
}

void ZOL_CALL _CSharp_Ring_reset(void* self) {
  as<Ring>(self).reset();
}

unsigned ZOL_CALL _CSharp_Ring_is_occurs_ok(void* self) {
  return as<Ring>(self).is_occurs_ok();
}

void ZOL_CALL _CSharp_Ring_setnil_Ring(void* self) {
  as<Ring>(self).setnil_Ring();
}

unsigned ZOL_CALL _CSharp_Ring_isnil_Ring(void* self) {
  return as<Ring>(self).isnil_Ring();
}
