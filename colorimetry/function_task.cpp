#include "colorimetry/internal/function_task.h"

#include <iterator>

#include "model/Zol.h"
#include "model/reflection.h"
#include "port/wide_text.h"

namespace zol_v2::colorimetry {

namespace {

struct FormulaName {
  std::string_view name, source;
};

// In the order of Formula.
constexpr FormulaName k_formulas[] = {
    {"unknown function", ""},
    {"CIE 1976 dE*ab", "CIE 15:2004, 8.2.1"},
    {"CIE 1994 dE", "CIE 116-1995"},
    {"CIEDE2000", "ISO/CIE 11664-6"},
    {"CMC(l:c)", "ISO 105-J03"},
    {"DIN99 dE", "DIN 6176:2001"},
    {"Hunter dE", "Hunter, JOSA 48 (1958)"},
    {"FMC-2", "Chickering, JOSA 61 (1971)"},
    {"CIELAB parts", "CIE 15:2004, 8.2.1"},
    {"CIELAB parts, signed", "CIE 15:2004, 8.2.1"},
    {"CIELAB L*C*H* parts", "CIE 15:2004, 8.2.3"},
    {"Hunter parts", "Hunter, JOSA 48 (1958)"},
    {"Hunter parts, signed", "Hunter, JOSA 48 (1958)"},
    {"metamerism index", "CIE 15:2004, 9.2; DIN 6172"},
    {"ISO brightness", "ISO 2470-1"},
    {"CIE whiteness", "CIE 15:2004, 9.1"},
    {"yellowness index", "ASTM E313"},
    {"status density", "ISO 5-3, as measured"},
    {"colour strength", "AATCC Evaluation Procedure 6"},
    {"mean CIE 1976 dE*ab", "CIE 15:2004, 8.2.1"},
    {"standard deviation of X", "ISO 3534-1"},
    {"standard deviation of Y", "ISO 3534-1"},
    {"standard deviation of Z", "ISO 3534-1"},
    {"standard deviation of L*", "ISO 3534-1"},
    {"standard deviation of a*", "ISO 3534-1"},
    {"standard deviation of b*", "ISO 3534-1"},
    {"standard deviation of C*", "ISO 3534-1"},
    {"standard deviation of h", "ISO 3534-1"},
    {"average standard deviation of L*", "ISO 3534-1"},
    {"average standard deviation of a*", "ISO 3534-1"},
    {"average standard deviation of b*", "ISO 3534-1"},
};
static_assert(std::size(k_formulas) == static_cast<std::size_t>(Formula::average_std_dev_b) + 1);

}  // namespace

std::string_view name_of(Formula formula) {
  return k_formulas[static_cast<std::size_t>(formula)].name;
}
std::string_view source_of(Formula formula) {
  return k_formulas[static_cast<std::size_t>(formula)].source;
}

namespace internal {

namespace {

struct PlainFunction {
  reflection::Type type;
  Formula formula;
};

// Functions that have nothing but a result.
const PlainFunction k_plain[] = {
    {FunctionDEType::k_class, Formula::de76},
    {FunctionMeanDEType::k_class, Formula::mean_de76},
    {FunctionStdDevXType::k_class, Formula::std_dev_x},
    {FunctionStdDevYType::k_class, Formula::std_dev_y},
    {FunctionStdDevZType::k_class, Formula::std_dev_z},
    {FunctionStdDevLType::k_class, Formula::std_dev_l},
    {FunctionStdDevAType::k_class, Formula::std_dev_a},
    {FunctionStdDevBType::k_class, Formula::std_dev_b},
    {FunctionStdDevCType::k_class, Formula::std_dev_c},
    {FunctionStdDevHType::k_class, Formula::std_dev_h},
    {FunctionAverageStdDevLType::k_class, Formula::average_std_dev_l},
    {FunctionAverageStdDevAType::k_class, Formula::average_std_dev_a},
    {FunctionAverageStdDevBType::k_class, Formula::average_std_dev_b},
};

using Tolerance = FunctionTolerance;
using Parameter = ToleranceParameterType;

Formula formula_of(Tolerance::Eenum_ToleranceType type) {
  switch (type) {
    case Tolerance::ToleranceType_Brightness:
      return Formula::brightness;
    case Tolerance::ToleranceType_DE_:
      return Formula::de76;
    case Tolerance::ToleranceType_DE00:
      return Formula::de2000;
    case Tolerance::ToleranceType_DE94:
      return Formula::de94;
    case Tolerance::ToleranceType_DE99:
      return Formula::din99;
    case Tolerance::ToleranceType_DEcmc:
      return Formula::cmc;
    case Tolerance::ToleranceType_Defmc2:
      return Formula::fmc2;
    case Tolerance::ToleranceType_DIN6172:
    case Tolerance::ToleranceType_MetamerismIndex:
      return Formula::metamerism;
    case Tolerance::ToleranceType_HunterDE:
      return Formula::hunter_de;
    case Tolerance::ToleranceType_HunterLab:
      return Formula::hunter_parts;
    case Tolerance::ToleranceType_HunterLabPlusMinus:
      return Formula::hunter_parts_signed;
    case Tolerance::ToleranceType_L_C_H_:
      return Formula::lch_parts;
    case Tolerance::ToleranceType_L_a_b_:
      return Formula::lab_parts;
    case Tolerance::ToleranceType_L_a_b_PlusMinus:
      return Formula::lab_parts_signed;
    case Tolerance::ToleranceType_StatusDensity:
      return Formula::density;
    case Tolerance::ToleranceType_Strength:
      return Formula::strength;
    case Tolerance::ToleranceType_Whiteness:
      return Formula::whiteness;
    case Tolerance::ToleranceType_Yellowness:
      return Formula::yellowness;
    default:
      return Formula::none;
  }
}

bool has_kl_kc(Formula formula) {
  return formula == Formula::de94 || formula == Formula::de2000 || formula == Formula::cmc;
}

// What a parameter limits or sets, by the formula that it stands with.
class ParameterReader {
 public:
  explicit ParameterReader(FunctionTask* task) : task_(*task) {}

  // False, with the reason in the task, if the formula has no place for the parameter.
  bool take(const Parameter& parameter) {
    const Formula formula = task_.formula;
    switch (parameter.getenum_ToleranceParameter()) {
      case Parameter::ToleranceParameter_unknown:
        return limit(Part::value, parameter);
      case Parameter::ToleranceParameter_Param_delta:
        return limit(has_index() ? Part::difference : Part::value, parameter);
      case Parameter::ToleranceParameter_Param_L:
        return limit_part(Part::l, parameter);
      case Parameter::ToleranceParameter_Param_a:
        return limit_part(Part::a, parameter);
      case Parameter::ToleranceParameter_Param_b:
        return limit_part(Part::b, parameter);
      case Parameter::ToleranceParameter_Param_C:
        return limit_part(Part::c, parameter);
      case Parameter::ToleranceParameter_Param_H:
        return limit_part(Part::h, parameter);
      case Parameter::ToleranceParameter_Param_KL:
        return has_kl_kc(formula) ? set(&task_.factors.l, parameter) : refuse(parameter);
      case Parameter::ToleranceParameter_Param_KC:
        return has_kl_kc(formula) ? set(&task_.factors.c, parameter) : refuse(parameter);
      case Parameter::ToleranceParameter_Param_KH:
        return has_kl_kc(formula) && formula != Formula::cmc ? set(&task_.factors.h, parameter)
                                                             : refuse(parameter);
      case Parameter::ToleranceParameter_Param_kE:
        return formula == Formula::din99 ? set(&task_.factors.l, parameter) : refuse(parameter);
      case Parameter::ToleranceParameter_Param_kCH:
        return formula == Formula::din99 ? set(&task_.factors.c, parameter) : refuse(parameter);
      case Parameter::ToleranceParameter_Param_CF:
        return formula == Formula::cmc ? set(&task_.commercial_factor, parameter)
                                       : refuse(parameter);
      case Parameter::ToleranceParameter_Param_WaveLength:
        if (formula != Formula::strength) return refuse(parameter);
        return set(&task_.wavelength.emplace(), parameter);
      case Parameter::ToleranceParameter_Param_Whiteness:
        return formula == Formula::whiteness ? limit(Part::value, parameter) : refuse(parameter);
      default:
        return refuse(parameter);
    }
  }

 private:
  bool has_index() const {
    return task_.formula == Formula::whiteness || task_.formula == Formula::yellowness ||
           task_.formula == Formula::brightness || task_.formula == Formula::density;
  }
  bool is_of_colours() const {
    return task_.formula != Formula::brightness && task_.formula != Formula::density &&
           task_.formula != Formula::strength && task_.formula != Formula::metamerism;
  }

  bool limit(Part part, const Parameter& parameter) {
    PartLimits limits;
    limits.part = part;
    limits.limits.low = parameter.get_LowValue();
    if (parameter.isset_HighValue()) limits.limits.high = parameter.get_HighValue();
    task_.parts.push_back(limits);
    return true;
  }

  bool limit_part(Part part, const Parameter& parameter) {
    return is_of_colours() ? limit(part, parameter) : refuse(parameter);
  }

  // The required one of the two values has the factor.
  bool set(double* factor, const Parameter& parameter) {
    *factor = parameter.get_LowValue();
    if (parameter.isset_HighValue() && parameter.get_HighValue() != *factor) {
      task_.reason = name(parameter) + " has two values";
      return false;
    }
    if (*factor > 0) return true;
    task_.reason = name(parameter) + " is not above 0";
    return false;
  }

  bool refuse(const Parameter& parameter) {
    task_.reason = std::string(name_of(task_.formula)) + " has no place for " + name(parameter);
    return false;
  }

  static std::string name(const Parameter& parameter) {
    return zol::port::to_utf8(parameter.get_ToleranceParameter());
  }

  FunctionTask& task_;
};

FunctionTask task_of_tolerance(const Tolerance& function) {
  FunctionTask task;
  task.formula = formula_of(function.getenum_ToleranceType());
  if (task.formula == Formula::none) {
    task.reason = "no published formula is known for \"" +
                  zol::port::to_utf8(function.get_ToleranceType()) + '"';
    return task;
  }
  if (task.formula == Formula::cmc) task.factors.l = 2;
  ParameterReader reader(&task);
  for (const Parameter& parameter : function.each_Parameters()) {
    if (!reader.take(parameter)) break;
  }
  return task;
}

FunctionTask weighted(Formula formula, const Factors& factors) {
  FunctionTask task;
  task.formula = formula;
  task.factors = factors;
  if (!(factors.l > 0 && factors.c > 0 && factors.h > 0)) {
    task.reason = "a parametric factor is not above 0";
  }
  return task;
}

}  // namespace

FunctionTask task_of(const FunctionType& function) {
  const reflection::ConstRef ref(function);
  for (const PlainFunction& plain : k_plain) {
    if (!ref.type().is_a(plain.type)) continue;
    FunctionTask task;
    task.formula = plain.formula;
    return task;
  }
  if (const auto* f = ref.as<FunctionDE2000Type>()) {
    return weighted(Formula::de2000, {f->get_Param_l(), f->get_Param_c(), f->get_Param_h()});
  }
  if (const auto* f = ref.as<FunctionDE94Type>()) {
    return weighted(Formula::de94, {f->get_Param_l(), f->get_Param_c(), f->get_Param_h()});
  }
  if (const auto* f = ref.as<FunctionDEcmcType>()) {
    return weighted(Formula::cmc, {f->get_Param_l(), f->get_Param_c(), 1});
  }
  if (const auto* f = ref.as<FunctionTolerance>()) return task_of_tolerance(*f);
  FunctionTask task;
  const auto* const generic = ref.as<FunctionGenericType>();
  task.reason = generic != nullptr ? "the function \"" + zol::port::to_utf8(generic->get_Name()) +
                                         "\" is the document's own"
                                   : "the function does not say what to compute";
  return task;
}

const FunctionType* function_in(const sg_Function& holder) {
  const FunctionType* function = nullptr;
  (void)holder.visit([&](const FunctionType& held) { function = &held; });
  return function;
}

FunctionType* function_in(sg_Function& holder) {
  // The holder's objects are its own, so they may be changed where the holder may.
  return const_cast<FunctionType*>(function_in(static_cast<const sg_Function&>(holder)));
}

bool is_over_measurements(Formula formula) {
  return formula >= Formula::mean_de76 && formula <= Formula::std_dev_h;
}
bool is_over_standards(Formula formula) { return formula >= Formula::average_std_dev_l; }

}  // namespace internal

}  // namespace zol_v2::colorimetry
