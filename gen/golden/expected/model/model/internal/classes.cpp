// Generated from model/schema by gen/emit_model.py: edit those, not this.
#include "model/Zol.h"

namespace zol_v2::internal {

const Class* const k_classes[] = {
  &Zol::k_class, &Box::k_class, &Seal::k_class, &Part::k_class, &PartChoice::k_class,
  &anon_Tag::k_class, &ShapeType::k_class, &RoundType::k_class, &RingType::k_class,
  &sg_Shape::k_class, &AnyShape::k_class, &Round::k_class, &Ring::k_class
};
const unsigned k_class_count = 13;

}  // namespace zol_v2::internal
