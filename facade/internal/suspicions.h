// What is lawful in a document and yet seldom meant: facade/check.h tells what is looked for.
#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "facade/internal/fault_list.h"
#include "model/internal/tables.h"

namespace zol_v2::internal {

// Is shown each object of a tree on the way down, and sees what stands around it.
class Suspicions {
 public:
  explicit Suspicions(FaultList& faults) : faults_(faults) {}

  // An object for as long as what is in it is walked through.
  class Visit {
   public:
    Visit(Suspicions& all, const Object& self, const Class& type, const Level& level,
          bool is_wanted);
    ~Visit();
    Visit(const Visit&) = delete;
    Visit& operator=(const Visit&) = delete;

   private:
    friend class Suspicions;

    // Of the spectra of one kind, which are lists in the same row.
    struct Spectra {
      const Row* points = nullptr;
      unsigned size = 0;
      bool is_uneven = false;
    };

    Suspicions* all_ = nullptr;  // null if nothing in the object concerns what is below
    const Visit* up_ = nullptr;  // the next one that does
    const Object* self_ = nullptr;
    const Row* collection_ = nullptr;
    mutable Spectra spectra_[2];  // of the colours of a set
  };

  // Looks at what takes all identifiers to be known.
  void finish(const Object& root);

 private:
  // What a class has that is looked at; null for what it has not.
  struct Concerns {
    const Row* unique_id = nullptr;
    const Row* name = nullptr;  // of what may stand for another one of its kind by its UniqueID
    bool recurs = false;        // is repeated wherever it is used
    const Row* points = nullptr;
    const Row* wavelength = nullptr;
    const Row* collection = nullptr;
    const Row* specification = nullptr;  // of a colour that takes an illuminant
    const Row* custom_value = nullptr;
    const Row* custom_name = nullptr;
    bool is_any = false;
  };
  // What an identifier identifies is told by the row that holds it.
  using Key = std::pair<const Row*, std::string_view>;
  struct KeyHash {
    std::size_t operator()(const Key& key) const {
      return std::hash<std::string_view>()(key.second) ^ std::hash<const void*>()(key.first);
    }
  };

  static std::vector<Concerns> make_concerns();
  static const Concerns& concerns_of(const Class& type);

  void look(const Object& self, const Class& type, const Concerns& concerns, const Level& level);
  void look_at_spectrum(const Object& self, const Concerns& concerns, const Level& level);
  void look_at_wavelengths(const Object& self, const Concerns& concerns, const Level& level);
  Fault* add_of_point(const Object& self, const Concerns& concerns, const Level& level,
                      unsigned index);
  void look_at_illuminant(const Object& self, const Row& specification, const Level& level);
  void look_at_custom_name(const Object& self, const Concerns& concerns, const Level& level);
  void note_identifier(const Object& self, const Class& type, const Concerns& concerns);
  void find_again(const Level& level);

  FaultList& faults_;
  const Visit* innermost_ = nullptr;
  std::vector<std::pair<double, unsigned>> wavelengths_;  // kept for its memory
  std::unordered_map<Key, const Object*, KeyHash> identified_;
  std::vector<std::pair<Key, const Object*>> references_;
  std::unordered_map<const Object*, const Object*> repeated_;  // to the first
  std::unordered_set<const Object*> unknown_;
  std::unordered_map<const Object*, std::string> first_paths_;
  std::deque<std::string> texts_;  // of identifiers that stand in the tree as wide ones
};

}  // namespace zol_v2::internal
