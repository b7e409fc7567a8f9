// Namespaces and names: the registry that numbers namespace URIs, the chain of prefix scopes, and a
// qualified name split at its colon.
//
// Names are compared by number: each URI has an id, 1000 and up in the order of first mention,
// so that a document may use any prefix it likes.
#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "port/export.h"

namespace lmx {

// One row of a constant table of namespaces, shared by reader and writer. A null URI ends the
// table.
struct s_ns_map {
  // The id that the URI gets.
  int ns_id;
  // What the writer declares for it; empty for the default namespace.
  const char* prefix;
  // Null ends the table.
  const char* uri;
};

// The ids that are the same in every document: of a prefix that nothing declares, of no namespace,
// of the prefix "xml" and of XML Schema instances; and the first that a document gives.
constexpr int k_ns_not_found = 0;
// No namespace.
constexpr int k_ns_none = 1;
// The prefix "xml".
constexpr int k_ns_xml = 2;
// XML Schema instances.
constexpr int k_ns_xsi = 5;
// The first id for what a document declares.
constexpr int k_ns_first_free = 1000;

// The namespace of XML Schema instances.
inline constexpr char k_xsi_uri[] = "http://www.w3.org/2001/XMLSchema-instance";

// How a c_repository keeps, lets go of and compares its values.
template <class T>
struct c_rep_ops;

// A number is its own copy.
template <>
struct c_rep_ops<int> {
  // The value to keep.
  static int copy(int value) { return value; }
  // Lets go of a kept value.
  static void release(int) {}
  // Are they alike?
  static bool is_equal(int a, int b) { return a == b; }
  // The order of an index.
  static bool is_less(int a, int b) { return a < b; }
};

// Owns a copy of each text. A null text counts as the empty one.
template <>
struct c_rep_ops<const char*> {
  // The value to keep.
  ZOL_API static const char* copy(const char* text);
  // Lets go of a kept value.
  static void release(const char* text) { delete[] text; }
  // Are they alike?
  static bool is_equal(const char* a, const char* b) { return std::strcmp(a, b) == 0; }
  // The order of an index.
  static bool is_less(const char* a, const char* b) { return std::strcmp(a, b) < 0; }
};

// An ordered list of (key, value) pairs with keys of its own, searched from the front. Costs a few
// words while it is empty. A list that outgrows a few dozen pairs is searched through an ordered
// index, so that no choice of names makes it slow.
template <class T, class Ops = c_rep_ops<T>>
class c_repository {
 public:
  c_repository() noexcept = default;
  c_repository(const c_repository&) = delete;
  c_repository& operator=(const c_repository&) = delete;

  // Releases everything.
  virtual void clear() {
    if (!entries_.empty()) release_all();
  }
  virtual ~c_repository() {
    if (!entries_.empty()) release_all();
  }

  // Gives a key that is present a new value and appends a pair otherwise. A replaced value is
  // released, or handed to the caller if `displaced` is not null, and *displaced says so.
  ZOL_API bool add(std::string_view key, T value, T* displaced = nullptr);
  // The value of the key. False, with *value as it was, if there is none.
  bool find(std::string_view key, T* value) const {
    if (entries_.empty()) return false;
    const Entry* const entry = find_entry(key);
    if (entry == nullptr) return false;
    *value = entry->value;
    return true;
  }
  // Is there a pair with that key?
  bool contains(std::string_view key) const { return find_entry(key) != nullptr; }
  // The key of the first pair with that value, or null.
  ZOL_API const char* find_key(T value) const;

  // Is there no pair?
  bool empty() const { return entries_.empty(); }
  // The number of pairs.
  std::size_t size() const { return entries_.size(); }

 private:
  struct Entry {
    std::unique_ptr<char[]> key;
    std::size_t key_length;
    T value;

    std::string_view key_view() const { return {key.get(), key_length}; }
  };
  struct Index;
  struct IndexDeleter {
    ZOL_API void operator()(Index* index) const;
  };

  ZOL_API const Entry* find_entry(std::string_view key) const;
  const Entry* find_indexed(std::string_view key) const;
  ZOL_API void build_index();
  ZOL_API void release_all();

  std::vector<Entry> entries_;
  std::unique_ptr<Index, IndexDeleter> index_;
};

ZOL_INSTANCE(c_repository<int>);
ZOL_INSTANCE(c_repository<const char*>);

// The registry from namespace URI to id.
class ZOL_API c_enumerated_namespaces {
 public:
  c_enumerated_namespaces() { clear(); }

  // Back to the two fixed entries, those of XML and of XML Schema instances.
  void clear();
  // The id of the URI, a new one if it was not known.
  int add_namespace(const char* uri);
  // Fixes the id of a URI; a URI that is known keeps its old id.
  void add_namespace(const char* uri, int id);
  // 0 if absent.
  int find_namespace(const std::string& uri) const;
  // Null if absent.
  const char* find_namespace_from_id(int id) const { return uris_.find_key(id); }

 private:
  int next_id_ = k_ns_first_free;
  c_repository<int> uris_;
};

// One level in the chain of prefix scopes. Borrows the levels around it, which must outlive it; the
// empty prefix stands for the default namespace.
class ZOL_API c_xml_local {
 public:
  c_xml_local() noexcept = default;
  // Not a copy: the new level is a child of `parent`, with an empty table.
  c_xml_local(const c_xml_local& parent) noexcept  // NOLINT: the meaning is fixed
      : previous_(&parent), nearest_(parent.nearest_) {}
  c_xml_local& operator=(const c_xml_local&) = delete;

  // Maps the prefix on this level, and no longer to what it meant here.
  void add_namespace(const char* prefix, int id);
  // 0 if no level maps the prefix. "xml" is 2 whatever is declared.
  int find_namespace_id(std::string_view prefix) const;
  // The innermost prefix of the id, or null.
  const char* find_namespace_prefix(int id) const;
  // The outermost prefix of the id, or null.
  const char* find_first_namespace_prefix(int id) const;
  // Empties the table of this level only.
  void clear() { prefixes_.clear(); }
  // Tells the mappings in force here from those of a level around this one that has more.
  const void* mappings() const { return nearest_; }

 private:
  // The next level outwards that may hold mappings.
  const c_xml_local* outer() const { return previous_ != nullptr ? previous_->nearest_ : nullptr; }

  const c_xml_local* previous_ = nullptr;
  const c_xml_local* nearest_ = nullptr;
  c_repository<int> prefixes_;
};

// A qualified name split at its first colon, with the namespace id of its prefix in a scope.
class ZOL_API c_cracked_name {
 public:
  c_cracked_name() = default;
  // As set().
  c_cracked_name(const c_xml_local* scope, const std::string& name) { set(scope, name); }

  // A null scope maps "xml" alone.
  void set(const c_xml_local* scope, const std::string& name) {
    split(scope, name, name.find(':') + 1);
  }
  // For a name whose first colon was found: `local_at` is one past it, 0 if there is none.
  void split(const c_xml_local* scope, std::string_view name, std::size_t local_at);

  // For a name whose namespace id was found elsewhere.
  void set_parts(std::string_view name, int ns_id) {
    split(nullptr, name, name.find(':') + 1);
    ns_id_ = ns_id;
  }

  // The name, what stands behind its first colon, and what stands before it. Good until the next
  // set().
  const std::string& get_full_name() const { return text_; }
  // See get_full_name.
  const std::string& get_local_name() const { return text_of(&local_name_, local_view()); }
  // See get_full_name.
  const std::string& get_ns_prefix() const {
    return text_of(&ns_prefix_, full_view().substr(0, local_at_ == 0 ? 0 : local_at_ - 1));
  }
  // The id of the prefix, or of the default namespace if there is no prefix; 0 if unknown.
  int get_ns_id() const { return ns_id_; }
  // Has the name a colon?
  bool get_has_ns_prefix() const { return local_at_ != 0; }
  // As get_ns_id, but 1 for a name without prefix where no default namespace is declared.
  int get_element_ns_id() const { return ns_id_ == 0 && local_at_ == 0 ? k_ns_none : ns_id_; }

  // The names in place, good until the next set().
  std::string_view full_view() const { return text_; }
  // See full_view.
  std::string_view local_view() const {
    return {text_.data() + local_at_, text_.size() - local_at_};
  }

 private:
  // The parts as strings of their own are brought up to date only when somebody asks for them.
  static const std::string& text_of(std::string* out, std::string_view text) {
    if (*out != text) out->assign(text);
    return *out;
  }

  std::string text_;
  std::size_t local_at_ = 0;  // one past the colon, 0 without a prefix
  int ns_id_ = 0;
  mutable std::string local_name_;
  mutable std::string ns_prefix_;
};

}  // namespace lmx
