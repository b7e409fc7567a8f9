// Documents with colours, from short descriptions.
#pragma once

#include <gtest/gtest.h>

#include <iomanip>
#include <locale>
#include <sstream>
#include <string>

#include "facade/files.h"
#include "model/Zol.h"

namespace zol_test {

constexpr char k_stamp[] = "<ChangeHistory>2026-03-05T06:10:00+01:00</ChangeHistory>";

// As documents have it, whatever the locale.
inline std::string number(double value) {
  std::ostringstream text;
  text.imbue(std::locale::classic());
  text << std::setprecision(12) << value;
  return text.str();
}

inline std::string document_text(const std::string& content) {
  return std::string(
             "<Zol xmlns='http://example.org/zol/v2' "
             "xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance'><Preamble><Header>"
             "<Creator>c</Creator><CreatorVersion>1</CreatorVersion>") +
         k_stamp + "<Purpose>p</Purpose></Header></Preamble>" + content + "</Zol>";
}

inline void load(zol_v2::Zol& document, const std::string& content) {
  zol_v2::LoadReport report;
  ASSERT_EQ(zol_v2::openText(document, document_text(content), &report), 0)
      << report.message << " in line " << report.line << ": " << report.item;
}

// How coordinates or spectra were measured; empty parts are left out or nilled.
struct Measured {
  std::string light = "<Illuminant>Illuminant_D50</Illuminant>";
  std::string observer = "2";
  std::string geometry = "<Angle>45</Angle>";
  std::string filter = "Filter_None";
  std::string polarised = "false";
  std::string quantity = "Spectrum_Reflectance";
  std::string profile;

  std::string head() const {
    const auto or_nil = [](const std::string& name, const std::string& value) {
      if (value.empty()) return '<' + name + " xsi:nil='true'/>";
      return '<' + name + '>' + value + "</" + name + '>';
    };
    return profile + or_nil("DeviceFilter", filter) + or_nil("DevicePolarization", polarised) +
           k_stamp + "<Spectrum>" + quantity + "</Spectrum>";
  }
  std::string place() const {
    return geometry.empty() ? "" : "<GeometryChoice>" + geometry + "</GeometryChoice>";
  }
  std::string tristimulus() const {
    const std::string name = "ColorSpaceSpecificationSpectrumTristimulus";
    if (light.empty()) return '<' + name + " xsi:nil='true'/>";
    return '<' + name + '>' + head() + "<IlluminationOptions>" + light +
           "</IlluminationOptions><FieldOfView>FieldOfView_" + observer + "_Degree</FieldOfView>" +
           place() + "</" + name + '>';
  }
  std::string spectral() const {
    const std::string name = "ColorSpaceSpecificationSpectrumSpectral";
    return '<' + name + '>' + head() + place() + "</" + name + '>';
  }
  std::string generic() const {
    const std::string name = "ColorSpaceSpecificationSpectrumGeneric";
    return '<' + name + '>' + head() + place() + "</" + name + '>';
  }
};

inline std::string element(const std::string& name, const std::string& content) {
  return '<' + name + '>' + content + "</" + name + '>';
}

inline std::string space(const std::string& name, const std::string& content) {
  return element("ColorSpace" + name, k_stamp + content);
}

inline std::string lab(double l, double a, double b, const Measured& how = {}) {
  return space("CIELab", how.tristimulus() + element("L", number(l)) + element("A", number(a)) +
                             element("B", number(b)));
}

// `value(nm)` from 400 to 700 nm by 10 nm.
template <class Value>
std::string spectrum(const Value& value, const Measured& how = {}) {
  std::string content = how.spectral();
  for (int nm = 400; nm <= 700; nm += 10) {
    content += "<ReflectancePoint Wavelength='" + number(nm) + "'>" + number(value(nm)) +
               "</ReflectancePoint>";
  }
  return space("Spectral", content);
}

inline std::string color(const std::string& spaces, const std::string& name = "colour") {
  return "<Color ColorName='" + name + "'>" + k_stamp + spaces + "</Color>";
}

constexpr char k_device[] =
    "<Device><Manufacturer>m</Manufacturer><Model>m</Model><SerialNumber>1</SerialNumber></Device>";

inline std::string measurement(const std::string& spaces, const std::string& functions = "") {
  return element("Measurement", k_device + color(spaces) + functions);
}
inline std::string standard(const std::string& spaces, const std::string& tolerances = "") {
  return element("Standard", k_device + color(spaces) + tolerances);
}
inline std::string pair(const std::string& measurements, const std::string& standard) {
  return element("StandardAndMeasurement", measurements + standard);
}
inline std::string record(const std::string& pairs, const std::string& tolerances = "") {
  return element("ColorQualityControl", k_stamp + pairs + tolerances);
}

}  // namespace zol_test
