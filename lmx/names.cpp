#include "lmx/names.h"

#include <map>
#include <set>
#include <utility>

#include "lmx/internal/byte_buffer.h"

namespace lmx {

namespace {

const char k_xml_uri[] = "http://www.w3.org/XML/1998/namespace";

// An honest document stays below this with its prefixes, its namespaces and its entities.
constexpr std::size_t k_indexed_from = 32;

}  // namespace

const char* c_rep_ops<const char*>::copy(const char* text) {
  if (text == nullptr) text = "";
  const std::size_t size = std::strlen(text) + 1;
  char* const result = new char[size];
  std::memcpy(result, text, size);
  return result;
}

// Both directions hold positions in the list. The way back is made on the first wish for it, since
// most lists are never asked.
template <class T, class Ops>
struct c_repository<T, Ops>::Index {
  struct ByValue {
    bool operator()(const std::pair<T, std::size_t>& a, const std::pair<T, std::size_t>& b) const {
      if (Ops::is_less(a.first, b.first)) return true;
      if (Ops::is_less(b.first, a.first)) return false;
      return a.second < b.second;
    }
  };

  std::map<std::string_view, std::size_t> by_key;
  std::set<std::pair<T, std::size_t>, ByValue> by_value;
};

template <class T, class Ops>
void c_repository<T, Ops>::IndexDeleter::operator()(Index* index) const {
  delete index;
}

template <class T, class Ops>
bool c_repository<T, Ops>::add(std::string_view key, T value, T* displaced) {
  if (Entry* const entry = const_cast<Entry*>(find_entry(key))) {
    const T copy = Ops::copy(value);
    if (index_ != nullptr && !index_->by_value.empty()) {
      const std::size_t position = static_cast<std::size_t>(entry - entries_.data());
      index_->by_value.erase({entry->value, position});
      index_->by_value.insert({copy, position});
    }
    const T old = std::exchange(entry->value, copy);
    if (displaced != nullptr) {
      *displaced = old;
    } else {
      Ops::release(old);
    }
    return true;
  }
  Entry entry{std::make_unique<char[]>(key.size() + 1), key.size(), T()};
  key.copy(entry.key.get(), key.size());
  entries_.push_back(std::move(entry));
  entries_.back().value = Ops::copy(value);
  if (index_ != nullptr) {
    const Entry& added = entries_.back();
    index_->by_key.emplace(added.key_view(), entries_.size() - 1);
    if (!index_->by_value.empty()) index_->by_value.insert({added.value, entries_.size() - 1});
  } else if (entries_.size() > k_indexed_from) {
    build_index();
  }
  return false;
}

template <class T, class Ops>
const char* c_repository<T, Ops>::find_key(T value) const {
  if (index_ == nullptr) {
    for (const Entry& entry : entries_) {
      if (Ops::is_equal(entry.value, value)) return entry.key.get();
    }
    return nullptr;
  }
  auto& by_value = index_->by_value;
  if (by_value.empty()) {
    for (std::size_t i = 0; i < entries_.size(); ++i) by_value.insert({entries_[i].value, i});
  }
  const auto found = by_value.lower_bound({value, 0});
  if (found == by_value.end() || !Ops::is_equal(found->first, value)) return nullptr;
  return entries_[found->second].key.get();
}

template <class T, class Ops>
auto c_repository<T, Ops>::find_entry(std::string_view key) const -> const Entry* {
  if (index_ != nullptr) return find_indexed(key);
  for (const Entry& entry : entries_) {
    if (entry.key_length == key.size() &&
        internal::is_equal_short(entry.key.get(), key.data(), key.size())) {
      return &entry;
    }
  }
  return nullptr;
}

template <class T, class Ops>
auto c_repository<T, Ops>::find_indexed(std::string_view key) const -> const Entry* {
  const auto found = index_->by_key.find(key);
  return found != index_->by_key.end() ? &entries_[found->second] : nullptr;
}

template <class T, class Ops>
void c_repository<T, Ops>::build_index() {
  index_.reset(new Index);
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    index_->by_key.emplace(entries_[i].key_view(), i);
  }
}

template <class T, class Ops>
void c_repository<T, Ops>::release_all() {
  index_.reset();
  for (Entry& entry : entries_) Ops::release(entry.value);
  entries_.clear();
}

template class c_repository<int>;
template class c_repository<const char*>;

void c_enumerated_namespaces::clear() {
  uris_.clear();
  next_id_ = k_ns_first_free;
  uris_.add(k_xsi_uri, k_ns_xsi);
  uris_.add(k_xml_uri, k_ns_xml);
}

int c_enumerated_namespaces::add_namespace(const char* uri) {
  int id = 0;
  if (uris_.find(uri, &id)) return id;
  id = next_id_++;
  uris_.add(uri, id);
  return id;
}

void c_enumerated_namespaces::add_namespace(const char* uri, int id) {
  if (!uris_.contains(uri)) uris_.add(uri, id);
  if (id >= next_id_) next_id_ = id + 1;
}

int c_enumerated_namespaces::find_namespace(const std::string& uri) const {
  int id = 0;
  return uris_.find(uri, &id) ? id : k_ns_not_found;
}

void c_xml_local::add_namespace(const char* prefix, int id) {
  prefixes_.add(prefix, id);
  nearest_ = this;
}

int c_xml_local::find_namespace_id(std::string_view prefix) const {
  if (prefix.size() == 3 && internal::is_equal_short(prefix.data(), "xml", 3)) return k_ns_xml;
  int id = 0;
  for (const c_xml_local* level = nearest_; level != nullptr; level = level->outer()) {
    if (level->prefixes_.find(prefix, &id)) return id;
  }
  return k_ns_not_found;
}

const char* c_xml_local::find_namespace_prefix(int id) const {
  if (id == k_ns_xml) return "xml";
  for (const c_xml_local* level = nearest_; level != nullptr; level = level->outer()) {
    if (const char* const prefix = level->prefixes_.find_key(id)) return prefix;
  }
  return nullptr;
}

const char* c_xml_local::find_first_namespace_prefix(int id) const {
  if (id == k_ns_xml) return "xml";
  const char* outermost = nullptr;
  for (const c_xml_local* level = nearest_; level != nullptr; level = level->outer()) {
    if (const char* const prefix = level->prefixes_.find_key(id)) outermost = prefix;
  }
  return outermost;
}

void c_cracked_name::split(const c_xml_local* scope, std::string_view name, std::size_t local_at) {
  internal::store(&text_, name.data(), name.size());
  local_at_ = local_at;
  const std::string_view prefix(text_.data(), local_at == 0 ? 0 : local_at - 1);
  if (scope != nullptr) {
    ns_id_ = scope->find_namespace_id(prefix);
  } else {
    ns_id_ = prefix == "xml" ? k_ns_xml : k_ns_not_found;
  }
}

}  // namespace lmx
