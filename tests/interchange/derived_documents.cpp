#include "interchange/derived_documents.h"

#include <gtest/gtest.h>

#include <cmath>

#include "facade/check.h"
#include "facade/files.h"
#include "model/documents.h"
#include "model/reflection.h"

namespace zol_test {

namespace {

using namespace zol_v2;
using reflection::ConstRef;
using reflection::End;
using reflection::Item;
using reflection::Kind;
using reflection::Ref;
using reflection::Row;

class Changer {
 public:
  explicit Changer(std::mt19937* random) : random_(*random) {}

  // Takes away or sets anew about one row in `rarity`.
  void change(Ref object, unsigned rarity) {
    for (const Row row : object.type().rows()) {
      const ConstRef seen = object;
      if (row.kind() == Kind::mark || row.kind() == Kind::foreign) continue;
      for (unsigned i = 0; i < seen.count(row); ++i) {
        if (!row.is_simple()) {
          change(const_cast<internal::Object&>(seen.value(row, i).child().object()), rarity);
        } else if (below(rarity) == 0) {
          set_anew(object, row, i);
        }
      }
      if (below(rarity) != 0 || row.place() == reflection::Place::alternative) continue;
      if (row.is_list() && seen.count(row) > 1) {
        EXPECT_TRUE(object.remove(row, below(seen.count(row))));
      } else if (!row.is_required() && !row.is_list()) {
        EXPECT_TRUE(object.unset(row));
      }
    }
    if (object.type().is_nillable() && below(rarity) == 0) (void)object.set_nil(true);
  }

 private:
  unsigned below(unsigned bound) { return static_cast<unsigned>(random_() % bound); }

  // Some of it is refused, which leaves the value as it was.
  void set_anew(Ref object, Row row, unsigned index) {
    const std::string text = value(row);
    if (row.is_list()) {
      (void)object.set_text(row, index, text);
    } else {
      (void)object.set_text(row, text);
    }
  }

  std::string value(Row row) {
    if (!row.values().empty()) return std::string(row.values()[below(row.values().size())]);
    switch (row.kind()) {
      case Kind::real:
        return real(row);
      case Kind::int32:
      case Kind::uint32:
      case Kind::uint8:
        return std::to_string(static_cast<int>(random_()) >> below(31));
      case Kind::truth:
        return below(2) == 0 ? "true" : "false";
      case Kind::datetime:
        return "20" + std::to_string(10 + below(90)) + "-02-0" + std::to_string(1 + below(9)) +
               "T10:00:" + std::to_string(10 + below(49)) + "." + std::to_string(below(10000)) +
               (below(2) == 0 ? "Z" : "-05:30");
      case Kind::binary:
        return std::string(4 * below(4), 'Q');
      default:
        return text(row.length());
    }
  }

  std::string real(Row row) {
    static const std::vector<std::string> special = {
        "0", "-0.0", "INF", "-INF", "NaN", "5E-324", "1.7976931348623157E308", "0.1", "1e21"};
    if (below(4) == 0) return special[below(special.size())];
    double value = std::uniform_real_distribution<double>(0, 1)(random_);
    if (row.lower() && row.upper()) {
      value = row.lower().value + value * (row.upper().value - row.lower().value);
    } else {
      value = std::ldexp(value, static_cast<int>(below(200)) - 100);
    }
    char digits[40];
    std::snprintf(digits, sizeof digits, "%.17g", value);
    return digits;
  }

  std::string text(unsigned length) {
    static const std::vector<std::string> pieces = {"a",
                                                    "\"",
                                                    "\\",
                                                    "/",
                                                    "\xC3\xA9",
                                                    "\xE8\x8C\xB6",
                                                    "\xF0\x9F\x8E\xA8",
                                                    "&",
                                                    "<",
                                                    ",",
                                                    ";",
                                                    "'",
                                                    "=",
                                                    "#",
                                                    "0",
                                                    "Z",
                                                    "\xC2\xA0",
                                                    "%",
                                                    "{",
                                                    "$"};
    std::string result;
    const unsigned count = length != 0 ? length : 1 + below(12);
    for (unsigned i = 0; i < count; ++i) result += pieces[below(pieces.size())];
    return result;
  }

  std::mt19937& random_;
};

}  // namespace

DerivedDocuments::DerivedDocuments(unsigned seed) : random_(seed) {
  for (const std::string& name : sample_names()) {
    origins_.push_back(std::make_unique<Zol>(loaded<Zol>(sample_bytes(name))));
  }
}

std::unique_ptr<Zol> DerivedDocuments::next() {
  while (true) {
    const Zol& origin = *origins_[random_() % origins_.size()];
    auto document = std::make_unique<Zol>(origin);
    Changer changer(&random_);
    // A small part of what is long, so that there can be many.
    const auto keep = [&](auto size, auto remove) {
      while (size() > 6) remove(static_cast<unsigned>(random_() % size()));
    };
    keep([&] { return document->size_Color(); }, [&](unsigned i) { document->delete_Color(i); });
    for (unsigned i = 0; i < document->size_Palette(); ++i) {
      for (unsigned j = 0; j < document->get_Palette(i).size_ColorSet(); ++j) {
        ColorSetType& set = document->get_Palette(i).get_ColorSet(j);
        keep([&] { return set.size_Color(); }, [&](unsigned k) { set.delete_Color(k); });
      }
    }
    changer.change(*document, 3 + static_cast<unsigned>(random_() % 60));
    CheckOptions options;
    options.is_exact = true;
    options.level = CheckLevel::reading;
    if (check(*document, options).errors == 0) return document;
  }
}

std::string exact_text(const Zol& document) {
  SaveOptions options;
  options.is_exact = true;
  options.is_stamped = false;
  std::string text;
  SaveReport report;
  EXPECT_EQ(saveString(document, text, &report, options), lmx::elmx_ok) << report.message;
  return text;
}

}  // namespace zol_test
