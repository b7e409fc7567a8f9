#include "tools/join.h"

#include <algorithm>
#include <functional>
#include <stdexcept>

#include "tools/text.h"
#include "tools/tree.h"
#include "tools/tree_diff.h"

using zol_v2::reflection::ConstRef;
using zol_v2::reflection::Item;
using zol_v2::reflection::Object;
using zol_v2::reflection::Ref;
using zol_v2::reflection::Row;
using zol_v2::reflection::Type;

namespace {

// Identifiers are told apart by what they are of: a colour and a palette may have the same.
std::string family_of(Type type) {
  while (type.base()) type = type.base();
  return std::string(type.name());
}

Row id_row(Type type) { return type.row(k_unique_id); }

Row name_row(Type type) {
  for (const Row row : type.rows()) {
    if (is_name_row(row)) return row;
  }
  return {};
}

std::string text_in(ConstRef object, Row row) {
  return row && object.has(row) ? exact_text(object.value(row)) : "";
}

// A nil specification stands for the one that has its unique id; so does a tag or a category that
// has no name.
bool is_reference(ConstRef object) {
  if (object.is_nil()) return true;
  const bool is_word =
      object.as<zol_v2::Tag>() != nullptr || object.as<zol_v2::TagCategory>() != nullptr;
  return is_word && text_in(object, name_row(object.type())).empty();
}

// Whatever a tree holds may be changed by whoever may change its root.
Ref changeable(ConstRef object) { return const_cast<Object&>(object.object()); }

// Each object at and below one.
void for_each_object(ConstRef object, const std::function<void(ConstRef)>& visit) {
  visit(object);
  for (const Item& item : object.children()) {
    if (const ConstRef child = item.object()) for_each_object(child, visit);
  }
}

template <class... Types>
bool swap_as(Ref a, Ref b) {
  const auto swap = [&](auto* x, auto* y) {
    if (x == nullptr || y == nullptr) return false;
    x->swap(*y);
    return true;
  };
  return (swap(a.as<Types>(), b.as<Types>()) || ...);
}

// The first that take() has not seen.
template <class Take>
std::string free_text(const std::string& text, const char* before, const char* behind,
                      const Take& take) {
  for (unsigned number = 2;; ++number) {
    std::string candidate = text + before + std::to_string(number) + behind;
    if (take(candidate)) return candidate;
  }
}

// The same for objects that are the same, and hardly ever for others.
std::size_t digest(ConstRef object) {
  std::string text;
  for_each_value(item_of(object), "", [&text](const std::string& path, const Item& value) {
    text.append(path).append("=").append(exact_text(value.value())).append("\n");
    return true;
  });
  return std::hash<std::string>()(text);
}

// The lists of a document.
std::vector<Row> lists_of(ConstRef document) {
  std::vector<Row> lists;
  for (const Row row : document.type().rows()) {
    if (row.is_list() && row.type()) lists.push_back(row);
  }
  return lists;
}

}  // namespace

bool Joiner::Contents::has(ConstRef object) const {
  const auto [begin, end] = objects_.equal_range(digest(object));
  return std::any_of(begin, end, [&](const auto& other) { return is_same(other.second, object); });
}

void Joiner::Contents::add(ConstRef object) {
  // Alike, they may stand wherever they are used.
  if (!has(object)) objects_.emplace(digest(object), object);
}

// New names and ids must be none that is on its way.
void Joiner::see(const std::vector<Newcomer>& newcomers) {
  for (const Newcomer& newcomer : newcomers) {
    const ConstRef entry(newcomer.entry);
    indices_[std::string(newcomer.row.name())].seen_names.insert(
        text_in(entry, name_row(entry.type())));
    for_each_object(entry, [this](ConstRef object) {
      const std::string text = text_in(object, id_row(object.type()));
      if (!text.empty()) seen_ids_.emplace(family_of(object.type()), text);
    });
  }
}

std::string Joiner::new_id(const Id& id) {
  return free_text(id.second, "-", "", [&](const std::string& candidate) {
    return seen_ids_.emplace(id.first, candidate).second;
  });
}

void Joiner::add(const std::string& file, zol_v2::Zol& document) {
  const Ref root(document);
  if (documents_++ == 0) {
    document_.swap(document);
    std::vector<Newcomer> own;
    for (const Row row : lists_of(document_)) {
      for (unsigned i = 0; i < ConstRef(document_).count(row); ++i) {
        own.push_back({row, i, Ref(document_).child(row, i), true});
        note_entry(row, own.back().entry);
      }
    }
    see(own);
    counts_.taken = own.size();
    return;
  }
  std::vector<Newcomer> newcomers;
  for (const Row row : lists_of(root)) {
    for (unsigned i = 0; i < ConstRef(root).count(row); ++i) {
      newcomers.push_back({row, i, root.child(row, i), false});
    }
  }
  see(newcomers);
  for (Newcomer& newcomer : newcomers) {
    const std::string list(newcomer.row.name());
    const std::string place = list + '[' + std::to_string(newcomer.index + 1) + "] \"" +
                              one_line(label_of(newcomer.entry)) + '"';
    judge(one_line(file) + ": " + place, &newcomer, indices_[list]);
  }
  settle_inner_ids(file, newcomers);
  for (const Newcomer& newcomer : newcomers) {
    if (newcomer.is_taken) take(newcomer);
  }
}

// Decides on an entry by its own name and unique id.
void Joiner::judge(const std::string& where, Newcomer* newcomer, Index& index) {
  const ConstRef entry(newcomer->entry);
  const Row ids = id_row(entry.type()), names = name_row(entry.type());
  const std::string id = text_in(entry, ids), name = text_in(entry, names);
  const auto found_id = index.ids.find(id);
  const auto found_name = index.names.find(name);
  const bool has_id = !id.empty() && found_id != index.ids.end();
  const bool has_name = !name.empty() && found_name != index.names.end();
  if ((has_id && found_id->second.has(entry)) || (has_name && found_name->second.has(entry))) {
    ++counts_.known;
    return;
  }
  newcomer->is_taken = true;
  if (!has_id && !has_name) return;
  const std::string what = has_id && has_name ? "name and unique id '" + one_line(id) + '\''
                           : has_id           ? "unique id '" + one_line(id) + '\''
                                              : "name";
  if (rule_ == OnConflict::fail) {
    faults_.push_back(where + ": another one has the same " + what);
  } else if (rule_ == OnConflict::keep) {
    newcomer->is_taken = false;
    ++counts_.left_out;
    notes_.push_back(where + ": left out, since another one has the same " + what);
  } else {
    std::string changes;
    if (has_id) {
      const std::string text = new_id({family_of(entry.type()), id});
      (void)newcomer->entry.set_text(ids, text);
      changes = "unique id '" + one_line(text) + '\'';
    }
    if (has_name) {
      const std::string text = free_text(name, " (", ")", [&](const std::string& candidate) {
        return index.seen_names.insert(candidate).second;
      });
      (void)newcomer->entry.set_text(names, text);
      changes = "name \"" + one_line(text) + '"' + (changes.empty() ? "" : " and " + changes);
    }
    ++counts_.renamed;
    notes_.push_back(where + ": got the " + changes);
  }
}

// Keeps what the identifiers inside of the entries stand for.
void Joiner::settle_inner_ids(const std::string& file, std::vector<Newcomer>& newcomers) {
  std::map<Id, std::vector<ConstRef>> own, left_out;  // that an id stands for
  std::map<Id, std::vector<ConstRef>> bearers;        // of an id, references too
  for (const Newcomer& newcomer : newcomers) {
    for_each_object(newcomer.entry, [&](ConstRef object) {
      const std::string text = text_in(object, id_row(object.type()));
      if (text.empty()) return;
      const Id id(family_of(object.type()), text);
      const bool is_inner = object != ConstRef(newcomer.entry);
      if (newcomer.is_taken && is_inner) bearers[id].push_back(object);
      if (!is_reference(object)) (newcomer.is_taken ? own : left_out)[id].push_back(object);
    });
  }
  const auto is_known = [this](const Id& id, const std::vector<ConstRef>& objects) {
    const auto found = definitions_.find(id);
    return found != definitions_.end() &&
           std::all_of(objects.begin(), objects.end(),
                       [&](ConstRef object) { return found->second.has(object); });
  };
  for (const auto& [id, objects] : bearers) {
    const auto defined = own.find(id);
    if (defined == own.end()) {
      const auto lost = left_out.find(id);
      if (lost != left_out.end() && !is_known(id, lost->second)) {
        faults_.push_back(one_line(file) + ": what is taken refers to '" + one_line(id.second) +
                          "', which would be left out: --on-conflict=rename takes both");
      }
    } else if (definitions_.count(id) != 0 && !is_known(id, defined->second)) {
      if (rule_ == OnConflict::fail) {
        faults_.push_back(one_line(file) + ": a different " + id.first +
                          " has the same unique id '" + one_line(id.second) + '\'');
        continue;
      }
      const std::string text = new_id(id);
      for (const ConstRef object : objects) {
        (void)changeable(object).set_text(id_row(object.type()), text);
      }
      ++counts_.renamed;
      notes_.push_back(one_line(file) + ": " + id.first + " '" + one_line(id.second) +
                       "' inside of what is taken got the unique id '" + one_line(text) + '\'');
    }
  }
}

void Joiner::take(const Newcomer& newcomer) {
  const Ref place = Ref(document_).append(newcomer.row);
  if (!swap_as<zol_v2::ColorType, zol_v2::PaletteType, zol_v2::ColorQualityControlType>(
          place, newcomer.entry)) {
    throw std::logic_error("a list of documents that can't be joined");
  }
  note_entry(newcomer.row, place);
  ++counts_.taken;
}

void Joiner::note_entry(Row row, ConstRef entry) {
  Index& index = indices_[std::string(row.name())];
  const std::string id = text_in(entry, id_row(entry.type()));
  const std::string name = text_in(entry, name_row(entry.type()));
  if (!id.empty()) index.ids[id].add(entry);
  if (!name.empty()) index.names[name].add(entry);
  for_each_object(entry, [this](ConstRef object) {
    const std::string text = text_in(object, id_row(object.type()));
    if (text.empty() || is_reference(object)) return;
    definitions_[{family_of(object.type()), text}].add(object);
  });
}
