// Joins documents.
#pragma once

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "model/Zol.h"
#include "model/reflection.h"

// What becomes of a colour, palette or record whose name or unique id another one has.
enum class OnConflict { keep, rename, fail };

// Collects the colours, palettes and quality-control records of several documents in the first one,
// each list by itself and in the order in which they come. What is there already, the same to the
// last digit, is not taken again.
//
// What an identifier stands for stays: where a specification, a tag or anything else inside of an
// entry has the unique id of a different one, it gets a new one, and with it all that refers to it.
class Joiner {
 public:
  explicit Joiner(OnConflict rule) : rule_(rule) {}

  // The document is left with what was not taken.
  void add(const std::string& file, zol_v2::Zol& document);

  const zol_v2::Zol& document() const { return document_; }
  std::size_t documents() const { return documents_; }
  // What was done with what, a line each.
  const std::vector<std::string>& notes() const { return notes_; }
  // Why nothing may be written.
  const std::vector<std::string>& faults() const { return faults_; }

  struct Counts {
    std::size_t taken = 0, known = 0, left_out = 0, renamed = 0;
  };
  const Counts& counts() const { return counts_; }

 private:
  using ConstRef = zol_v2::reflection::ConstRef;
  using Ref = zol_v2::reflection::Ref;
  using Row = zol_v2::reflection::Row;

  // An identifier, by the family of the objects that share it.
  using Id = std::pair<std::string, std::string>;
  // Objects by what is in them.
  class Contents {
   public:
    bool has(ConstRef object) const;
    void add(ConstRef object);

   private:
    std::unordered_multimap<std::size_t, ConstRef> objects_;
  };
  // What the entries of one list are found by.
  struct Index {
    std::unordered_map<std::string, Contents> ids, names;
    std::unordered_set<std::string> seen_names;  // of documents that are not taken yet, too
  };
  struct Newcomer {
    Row row;
    unsigned index = 0;
    Ref entry;
    bool is_taken = false;
  };

  void see(const std::vector<Newcomer>& newcomers);
  std::string new_id(const Id& id);
  void judge(const std::string& where, Newcomer* newcomer, Index& index);
  void settle_inner_ids(const std::string& file, std::vector<Newcomer>& newcomers);
  void take(const Newcomer& newcomer);
  void note_entry(Row row, ConstRef entry);

  const OnConflict rule_;
  zol_v2::Zol document_;
  std::size_t documents_ = 0;
  std::map<std::string, Index, std::less<>> indices_;  // by the name of the list
  std::map<Id, Contents> definitions_;
  std::set<Id> seen_ids_;  // references, too
  std::vector<std::string> notes_, faults_;
  Counts counts_;
};
