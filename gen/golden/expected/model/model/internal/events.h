// Generated from model/schema by gen/emit_model.py: edit those, not this.
// One number for each element or attribute name of the schema, as the reader's events.
#pragma once

namespace zol_v2::internal::event {

enum Number : int {
  Note = 12,
  Stamp = 13,
  Alias = 14,
  Size = 15,
  Box = 16,
  Lid = 17,
  Part = 18,
  Grade = 19,
  Spare = 20,
  Count = 21,
  Code = 22,
  Weight = 23,
  Seal = 24,
  Unit = 25,
  Text = 26,
  Amount = 27,
  Number = 28,
  TagText = 29,
  TagNumber = 30,
  Name = 31,
  Choice = 32,
  Radius = 33,
  Inner = 34,
  Shape = 35,
  Round = 36,
  Ring = 37
};

}  // namespace zol_v2::internal::event
