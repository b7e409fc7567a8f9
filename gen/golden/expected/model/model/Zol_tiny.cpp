// Generated from model/schema/tiny.rows by gen/model_source.py: edit those, not this.
#include "model/Zol.h"
#include "model/internal/tables.h"
#include "model/sdk_stamp.h"

#if defined(__GNUC__)
// The classes have virtual functions, and yet every field a fixed place.
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
#endif

namespace zol_v2 {

using internal::Class;
using internal::End;
using internal::Kind;
using internal::NamedType;
using internal::Place;
using internal::Row;
using internal::Shape;

// Zol
constexpr Row Zol::k_rows[] = {
  Row(Place::element, Kind::text, "Zol:Note", offsetof(Zol, note_), 12, __LINE__).number(1).required().about("What \"the\\rest\" means, a | b & c*."),
  Row(Place::element, Kind::datetime, "Zol:Stamp", offsetof(Zol, stamp_), 13, __LINE__).number(2).list().required().about("When it was stamped."),
  Row(Place::element, Kind::text, "Zol:Alias", offsetof(Zol, alias_), 14, __LINE__).number(3).list().collapsed().about("Another name."),
  Row(Place::element, Kind::uint32, "Zol:Size", offsetof(Zol, size_), 15, __LINE__).number(4).from(0, End::strict).on_read().to(9).about("How big it is."),
  Row(Place::element, Kind::object, "Zol:Box", offsetof(Zol, box_), 16, __LINE__).number(5).required().of(Box::k_class).about("A box."),
  Row(Place::element, Kind::object, "Zol:Lid", offsetof(Zol, lid_), 17, __LINE__).number(6).of(Box::k_class).about("What shuts the box."),
  Row(Place::element, Kind::object, "Zol:Part", offsetof(Zol, part_), 18, __LINE__).number(7).list().of(Part::k_class).about("A value with an attribute."),
  Row(Place::element, Kind::member, "Zol:Shape", offsetof(Zol, shape_), 35, __LINE__).number(8).list().of(sg_Shape::k_class).about("One of the family."),
  Row(Place::element, Kind::member, "Zol:Outline", offsetof(Zol, outline_), 0, __LINE__).number(9).required().of(sg_Shape::k_class).about("One of the family."),
  Row(Place::element, Kind::group, "Zol:anon_Tag", offsetof(Zol, anon_tag_), 0, __LINE__).number(10).required().of(anon_Tag::k_class).about("What it is tagged with."),
  Row(Place::element, Kind::foreign, "Zol:any", offsetof(Zol, any_), 0, __LINE__).list().about("Whatever else there is."),
};
constexpr Class Zol::k_class =
    Class("Zol", Shape::plain, 0, internal::making<Zol>())
        .with(k_rows, 0, 11, 0).wants(0x622, 0x426, 0x0, 0x672).keeping(offsetof(Zol, batch_))
        .marked(
            Class::k_required_list | Class::k_wants_content | Class::k_names_namespaces | Class::k_document)
        .about("The root.");
constexpr char Zol::k_element_name[];
Zol::Zol() { become(k_class); SdkStamp().stampRead(*this); }
Zol::Zol(const Zol& other) : Zol() { internal::copy(*this, other, k_class); }
Zol::Zol(Zol&& other) noexcept { become(k_class); internal::swap(*this, other, k_class); }
Zol::~Zol() { internal::release(*this, k_class); }

// Box
constexpr Row Box::k_rows[] = {
  Row(Place::attribute, Kind::enumerated, "Grade", offsetof(Box, grade_), 19, __LINE__).number(1).required().of(internal::k_Grade).about("How it is graded."),
  Row(Place::attribute, Kind::enumerated, "Spare", offsetof(Box, spare_), 20, __LINE__).number(2).of(internal::k_Grade).starts_at(1).about("How a spare one is graded."),
  Row(Place::attribute, Kind::uint8, "Count", offsetof(Box, count_), 21, __LINE__).number(3).required().from(2).to(99).about("How many there are, the spare ones included."),
  Row(Place::element, Kind::text, "Zol:Code", offsetof(Box, code_), 22, __LINE__).number(4).required().characters(1).about("A letter."),
  Row(Place::element, Kind::real, "Zol:Weight", offsetof(Box, weight_), 23, __LINE__).number(5).required().from(0, End::strict).to(2.5).in("kg").about("How heavy it is."),
  Row(Place::element, Kind::mark, "Zol:Seal", 0, 24, __LINE__).about("That it is sealed."),
};
constexpr Class Box::k_class =
    Class("Box", Shape::plain, 1, internal::making<Box>())
        .with(k_rows, 3, 3, 0).wants(0x3a, 0x3a, 0xa, 0x7e).nilled_by(6)
        .about("A box. It may be empty.");
Box::Box() { become(k_class); }
Box::Box(const Box& other) : Box() { internal::copy(*this, other, k_class); }
Box::Box(Box&& other) noexcept { become(k_class); internal::swap(*this, other, k_class); }
Box::~Box() { internal::release(*this, k_class); }

// Seal
constexpr Class Seal::k_class =
    Class("Seal", Shape::plain, 2, internal::making<Seal>())
        .wants(0x0, 0x0, 0x0, 0x0).marked(Class::k_blank | Class::k_owns_nothing)
        .about("That it is sealed.");
Seal::Seal() { become(k_class); }
Seal::Seal(const Seal& other) : Seal() { internal::copy(*this, other, k_class); }
Seal::Seal(Seal&& other) noexcept { become(k_class); internal::swap(*this, other, k_class); }
Seal::~Seal() = default;

// Part
constexpr Row Part::k_rows[] = {
  Row(Place::attribute, Kind::text, "Unit", offsetof(Part, unit_), 25, __LINE__).number(1).about("What it is counted in."),
  Row(Place::content, Kind::binary, "Zol:Part", offsetof(Part, part_), 18, __LINE__).number(2).required().about("What it is made of."),
};
constexpr Class Part::k_class =
    Class("Part", Shape::simple, 3, internal::making<Part>())
        .with(k_rows, 1, 0, 1).wants(0x4, 0x4, 0x0, 0x6).about("A value with an attribute.");
Part::Part() { become(k_class); }
Part::Part(const Part& other) : Part() { internal::copy(*this, other, k_class); }
Part::Part(Part&& other) noexcept { become(k_class); internal::swap(*this, other, k_class); }
Part::~Part() { internal::release(*this, k_class); }

// PartChoice
constexpr Row PartChoice::k_rows[] = {
  Row(Place::alternative, Kind::enumerated, "Zol:Grade", offsetof(PartChoice, slot_), 19, __LINE__).of(internal::k_Grade).about("How it is graded."),
  Row(Place::alternative, Kind::text, "Zol:Text", offsetof(PartChoice, slot_), 26, __LINE__).number(1).collapsed().about("What it says."),
  Row(Place::alternative, Kind::real, "Zol:Amount", offsetof(PartChoice, slot_), 27, __LINE__).number(2).from(0).in("percent").about("A share."),
  Row(Place::alternative, Kind::int32, "Zol:Number", offsetof(PartChoice, slot_), 28, __LINE__).number(3).from(-2147483648).to(2147483647).about("A number."),
  Row(Place::alternative, Kind::object, "Zol:Box", offsetof(PartChoice, slot_), 16, __LINE__).number(4).of(Box::k_class).about("A box."),
};
constexpr Class PartChoice::k_class =
    Class("PartChoice", Shape::choice, 4, internal::making<PartChoice>())
        .with(k_rows, 0, 0, 5).wants(0x0, 0x0, 0x0, 0x0).unless(5)
        .marked(Class::k_wants_content).about("One of several.");
PartChoice::PartChoice() { become(k_class, 5); }
PartChoice::PartChoice(const PartChoice& other) : PartChoice() {
  internal::copy(*this, other, k_class);
}
PartChoice::PartChoice(PartChoice&& other) noexcept { become(k_class, 5); internal::swap(*this,
    other, k_class); }
PartChoice::~PartChoice() { internal::release(*this, k_class); }

// anon_Tag
constexpr Row anon_Tag::k_rows[] = {
  Row(Place::alternative, Kind::text, "Zol:TagText", offsetof(anon_Tag, slot_), 29, __LINE__).about("What it says."),
  Row(Place::alternative, Kind::real, "Zol:TagNumber", offsetof(anon_Tag, slot_), 30, __LINE__).number(1).about("A number."),
};
constexpr Class anon_Tag::k_class =
    Class("anon_Tag", Shape::anonymous, 5, internal::making<anon_Tag>())
        .with(k_rows, 0, 0, 2).wants(0x0, 0x0, 0x0, 0x0).unless(2)
        .about("What it is tagged with.");
anon_Tag::anon_Tag() { become(k_class, 2); }
anon_Tag::anon_Tag(const anon_Tag& other) : anon_Tag() { internal::copy(*this, other, k_class); }
anon_Tag::anon_Tag(anon_Tag&& other) noexcept { become(k_class, 2); internal::swap(*this, other,
    k_class); }
anon_Tag::~anon_Tag() { internal::release(*this, k_class); }

// ShapeType
constexpr Row ShapeType::k_rows[] = {
  Row(Place::attribute, Kind::text, "Name", offsetof(ShapeType, name_), 31, __LINE__).number(1).about("What it is called."),
  Row(Place::element, Kind::object, "Zol:Choice", offsetof(ShapeType, choice_), 32, __LINE__).number(2).of(PartChoice::k_class).about("One of several."),
};
static const Class* const k_ShapeType_factory[] = {
  &RoundType::k_class, &RingType::k_class, nullptr
};
constexpr Class ShapeType::k_class =
    Class("ShapeType", Shape::plain, 6, internal::making<ShapeType>())
        .with(k_rows, 1, 1, 0).wants(0x0, 0x0, 0x0, 0x6).typed("ShapeType", ShapeType::id)
        .of(internal::k_family<ShapeType>).building(k_ShapeType_factory)
        .marked(Class::k_names_namespaces).about("A family.");
const char* ShapeType::id = "ShapeType";
ShapeType::ShapeType() { become(k_class); }
ShapeType::ShapeType(const ShapeType& other) : ShapeType() {
  internal::copy(*this, other, k_class);
}
ShapeType::ShapeType(ShapeType&& other) noexcept { become(k_class); internal::swap(*this, other,
    k_class); }
ShapeType::~ShapeType() { internal::release(*this, k_class); }

// RoundType
constexpr Row RoundType::k_rows[] = {
  Row(Place::element, Kind::real, "Zol:Radius", offsetof(RoundType, radius_), 33, __LINE__).number(3).required().from(0).about("From its middle to its edge."),
};
static const Class* const k_RoundType_factory[] = {
  &RoundType::k_class, &RingType::k_class, nullptr
};
constexpr Class RoundType::k_class =
    Class("RoundType", Shape::plain, 7, internal::making<RoundType>())
        .derived_from(ShapeType::k_class).with(k_rows, 0, 1, 0).wants(0x8, 0x8, 0x0, 0xe)
        .typed("RoundType", RoundType::id).of(internal::k_family<ShapeType>)
        .building(k_RoundType_factory)
        .marked(Class::k_wants_content | Class::k_names_namespaces).about("Something round.");
const char* RoundType::id = "RoundType";
RoundType::RoundType() { become(k_class); }
RoundType::RoundType(const RoundType& other) : RoundType() {
  internal::copy(*this, other, k_class);
}
RoundType::RoundType(RoundType&& other) noexcept { become(k_class); internal::swap(*this, other,
    k_class); }
RoundType::~RoundType() = default;

// RingType
constexpr Row RingType::k_rows[] = {
  Row(Place::element, Kind::real, "Zol:Inner", offsetof(RingType, inner_), 34, __LINE__).number(4).required().about("From its middle to the hole."),
};
constexpr Class RingType::k_class =
    Class("RingType", Shape::plain, 8, internal::making<RingType>())
        .derived_from(RoundType::k_class).with(k_rows, 0, 1, 0).wants(0x18, 0x18, 0x0, 0x1e)
        .typed("RingType", RingType::id).of(internal::k_family<ShapeType>)
        .marked(Class::k_wants_content | Class::k_names_namespaces)
        .about("Something round with a hole.");
const char* RingType::id = "RingType";
RingType::RingType() { become(k_class); }
RingType::RingType(const RingType& other) : RingType() { internal::copy(*this, other, k_class); }
RingType::RingType(RingType&& other) noexcept { become(k_class); internal::swap(*this, other,
    k_class); }
RingType::~RingType() = default;

// sg_Shape
constexpr Row sg_Shape::k_rows[] = {
  Row(Place::alternative, Kind::object, "Zol:Shape", offsetof(sg_Shape, slot_), 35, __LINE__).of(ShapeType::k_class).named(NamedType::required).adopting().about("A family."),
  Row(Place::alternative, Kind::object, "Zol:Round", offsetof(sg_Shape, slot_), 36, __LINE__).number(1).of(RoundType::k_class).named(NamedType::optional).adopting().about("Something round."),
  Row(Place::alternative, Kind::object, "Zol:Ring", offsetof(sg_Shape, slot_), 37, __LINE__).number(2).of(RingType::k_class).about("Something round with a hole."),
};
constexpr Class sg_Shape::k_class =
    Class("sg_Shape", Shape::holder, 9, internal::making<sg_Shape>())
        .with(k_rows, 0, 0, 3).wants(0x0, 0x0, 0x0, 0x0).unless(3)
        .of(internal::k_family<ShapeType>).about("One of the family.");
sg_Shape::sg_Shape() { become(k_class, 3); }
sg_Shape::sg_Shape(const sg_Shape& other) : sg_Shape() { internal::copy(*this, other, k_class); }
sg_Shape::sg_Shape(sg_Shape&& other) noexcept { become(k_class, 3); internal::swap(*this, other,
    k_class); }
sg_Shape::~sg_Shape() { internal::release(*this, k_class); }

// AnyShape
constexpr Class AnyShape::k_class =
    Class("AnyShape", Shape::wrapper, 10, internal::making<AnyShape>())
        .derived_from(ShapeType::k_class).wants(0x0, 0x0, 0x0, 0x6)
        .typed("ShapeType", ShapeType::id).of(internal::k_family<ShapeType>)
        .marked(Class::k_names_namespaces).about("A family.");
AnyShape::AnyShape() { become(k_class); }
AnyShape::AnyShape(const AnyShape& other) : ShapeType(other) { become(k_class); }
AnyShape::AnyShape(AnyShape&& other) noexcept : ShapeType(std::move(other)) { become(k_class); }
AnyShape::~AnyShape() = default;

// Round
constexpr Class Round::k_class =
    Class("Round", Shape::wrapper, 11, internal::making<Round>())
        .derived_from(RoundType::k_class).wants(0x8, 0x8, 0x0, 0xe)
        .typed("RoundType", RoundType::id).of(internal::k_family<ShapeType>)
        .marked(Class::k_wants_content | Class::k_names_namespaces | Class::k_document)
        .about("Something round.");
constexpr char Round::k_element_name[];
Round::Round() { become(k_class); }
Round::Round(const Round& other) : RoundType(other) { become(k_class); }
Round::Round(Round&& other) noexcept : RoundType(std::move(other)) { become(k_class); }
Round::~Round() = default;

// Ring
constexpr Class Ring::k_class =
    Class("Ring", Shape::wrapper, 12, internal::making<Ring>())
        .derived_from(RingType::k_class).wants(0x18, 0x18, 0x0, 0x3e).nilled_by(5)
        .typed("RingType", RingType::id).of(internal::k_family<ShapeType>)
        .marked(Class::k_wants_content | Class::k_names_namespaces | Class::k_document)
        .about("Something round with a hole.");
constexpr char Ring::k_element_name[];
Ring::Ring() { become(k_class); }
Ring::Ring(const Ring& other) : Ring() { internal::copy(*this, other, k_class); }
Ring::Ring(Ring&& other) noexcept { become(k_class); internal::swap(*this, other, k_class); }
Ring::~Ring() = default;

}  // namespace zol_v2
