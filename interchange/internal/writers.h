// The writers and readers of the formats.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "interchange/formats.h"

namespace zol_v2::interchange::internal {

// A writer that sees colours alone.
class RecordWriter : public Writer {
 public:
  RecordWriter() = default;
  explicit RecordWriter(const WriteOptions& options) : sink_(options.sink) {}
  void add(const Zol& document, std::string_view name) final;
  Report finish(std::string* bytes) final;

 protected:
  // Before its colours.
  virtual void add_document(const Zol& document, std::string_view name);
  virtual void add_record(const ColorRecord& record, std::string_view document) = 0;
  // Behind them.
  virtual void end_document(const Zol& document);
  virtual void finish_records(std::string* bytes) = 0;

  // Gives the sink, if there is one, what has become a block, and empties it.
  void hand_over(std::string* bytes);

  Report& report() { return report_; }
  Losses& losses() { return report_.losses; }

 private:
  Report report_;
  std::function<bool(std::string_view)> sink_;
  bool is_refused_ = false;
};

std::unique_ptr<Writer> make_table_writer(Format format, const WriteOptions& options);
std::unique_ptr<Writer> make_cgats_writer();
std::unique_ptr<Writer> make_sqlite_writer(const WriteOptions& options);

// A missing row is a fault, since the document is to be saved.
Report read_whole_json(std::string_view text, Zol* document);
Report read_table(std::string_view text, const ReadOptions& options, Zol* document);
Report read_cgats(std::string_view text, const ReadOptions& options, Zol* document);

}  // namespace zol_v2::interchange::internal
