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
  void add(const Zol& document, std::string_view name) final;
  Report finish(std::string* bytes) final;

 protected:
  // Before its colours.
  virtual void add_document(const Zol& document, std::string_view name);
  virtual void add_record(const ColorRecord& record, std::string_view document) = 0;
  // Behind them.
  virtual void end_document(const Zol& document);
  virtual void finish_records(std::string* bytes) = 0;

  Report& report() { return report_; }
  Losses& losses() { return report_.losses; }

 private:
  Report report_;
};

std::unique_ptr<Writer> make_table_writer(Format format, const WriteOptions& options);
std::unique_ptr<Writer> make_cgats_writer();
std::unique_ptr<Writer> make_sqlite_writer();

Report read_table(std::string_view text, const ReadOptions& options, Zol* document);
Report read_cgats(std::string_view text, const ReadOptions& options, Zol* document);

}  // namespace zol_v2::interchange::internal
