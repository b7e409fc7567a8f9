#include "tools/exchange.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>
#include <mutex>
#include <unordered_set>

#include "facade/files.h"
#include "model/Zol.h"
#include "tools/document_text.h"
#include "tools/file_walk.h"
#include "tools/judge.h"
#include "tools/load.h"
#include "tools/output.h"
#include "tools/progress.h"
#include "tools/save.h"
#include "tools/terminal.h"
#include "tools/text.h"

using zol_v2::interchange::Format;
using zol_v2::interchange::Report;

void Notice::add(const std::string& subject, std::string message) {
  complaints.emplace_back(subject, std::move(message));
}

void Notice::fail(const std::string& subject, std::string message) {
  status = ExitStatus::trouble;
  add(subject, std::move(message));
}

void Notice::fail(const std::string& file, std::vector<zol_v2::Fault> faults) {
  Verdict verdict;
  verdict.file = file;
  verdict.status = ExitStatus::fault;
  verdict.report.faults = std::move(faults);
  status = worse(status, ExitStatus::fault);
  verdicts.push_back(std::move(verdict));
}

void Notice::print() const {
  for (const Verdict& verdict : verdicts) complain_of(verdict);
  for (const auto& [subject, message] : complaints) complain(subject, message);
}

namespace {

struct Loaded {
  ExitStatus status = ExitStatus::ok;
  std::string file;
  Notice notice;
  std::unique_ptr<zol_v2::Zol> document = std::make_unique<zol_v2::Zol>();
};

void add_rest(const std::string& file, const Report& report, Notice* notice) {
  for (const std::string& note : report.notes) notice->add(file, "assumed that " + note);
  std::string lost;
  for (const auto& loss : report.losses.all()) {
    lost += (lost.empty() ? "" : ", ") + std::to_string(loss.count) + ' ' + loss.kind;
  }
  if (!lost.empty()) notice->add(file, "left out " + lost);
}

void add_judgement(const std::string& path, zol_v2::SaveReport* report, Notice* notice) {
  // It says beyond success, too: how safe the new file is.
  if (!report->message.empty()) notice->add(path, report->message);
  if (report->code != lmx::elmx_ok) notice->status = ExitStatus::trouble;
}

// Into a document, whatever the file is.
Loaded load(const std::string& path, const Conversion& conversion) {
  Loaded loaded;
  loaded.file = path;
  Notice& notice = loaded.notice;
  if (conversion.from == nullptr) {
    DocumentSource source(path);
    Verdict verdict = try_load(source, *loaded.document);
    notice.status = verdict.status;
    if (verdict.status != ExitStatus::ok) notice.verdicts.push_back(std::move(verdict));
  } else {
    std::string bytes;
    if (!read_bytes(path, &bytes)) {
      notice.fail(path, std::strerror(errno));
    } else {
      zol_v2::interchange::ReadOptions reading = conversion.reading;
      reading.source = path == k_standard_stream ? "standard input" : valid_utf8(path);
      Report report = read(bytes, conversion.from->format, reading, loaded.document.get());
      if (report) {
        add_rest(path, report, &notice);
      } else {
        notice.fail(path, std::move(report.faults));
      }
    }
  }
  loaded.status = notice.status;
  return loaded;
}

void save(const zol_v2::Zol& document, const zol_v2::SaveOptions& options,
          const std::string& output, zol_v2::SaveReport* report) {
  if (output != k_standard_stream) {
    (void)saveFile(document, wide_path(output), report, options);
    return;
  }
  std::string text;
  if (saveString(document, text, report, options) == lmx::elmx_ok) print(text);
}

// The text as it stands, of a document that could be written as well.
Notice copy_text(const std::string& input, const std::string& output) {
  Notice notice;
  DocumentSource source(input);
  source.hold();
  Verdict verdict = judge(source, JudgeOptions());
  if (verdict.status != ExitStatus::ok) {
    notice.status = verdict.status;
    notice.verdicts.push_back(std::move(verdict));
    return notice;
  }
  std::string text;
  const zol_v2::LoadReport read = source.read(&text);
  if (read.code != lmx::elmx_ok) {
    notice.fail(input, read.message);
  } else if (output == k_standard_stream) {
    print(text);
  } else {
    zol_v2::SaveReport report;
    (void)zol_v2::saveText(text, wide_path(output), &report);
    add_judgement(output, &report, &notice);
  }
  return notice;
}

// The document as this library writes it.
Notice rewrite(const Conversion& conversion, const std::string& input, const std::string& output) {
  Notice notice;
  zol_v2::Zol document;
  DocumentSource source(input);
  Verdict verdict = try_load(source, document);
  if (verdict.status != ExitStatus::ok) {
    notice.status = verdict.status;
    notice.verdicts.push_back(std::move(verdict));
    return notice;
  }
  zol_v2::SaveOptions saving;
  saving.is_exact = conversion.is_exact;
  zol_v2::SaveReport report;
  save(document, saving, output, &report);
  if (report.faults.empty()) {
    add_judgement(output, &report, &notice);
    return notice;
  }
  std::string text;
  if (source.read(&text).code == lmx::elmx_ok) zol_v2::locate(report.faults, text);
  notice.fail(input, std::move(report.faults));
  return notice;
}

// What is read says all of it, numbers with all digits; a table has no stamp to keep.
void save_imported(const Loaded& loaded, const Conversion& conversion, const std::string& output,
                   Notice* notice) {
  zol_v2::SaveOptions saving;
  saving.is_exact = true;
  saving.is_checked = true;
  saving.is_stamped = conversion.from->format != Format::json;
  zol_v2::SaveReport report;
  save(*loaded.document, saving, output, &report);
  if (report.faults.empty()) {
    add_judgement(output, &report, notice);
  } else {
    notice->fail(loaded.file, std::move(report.faults));
  }
}

// A writer of the format into a file that is there when it is whole.
class FormatOutput {
 public:
  FormatOutput(const Conversion& conversion, const std::string& path) : path_(path), output_(path) {
    zol_v2::interchange::WriteOptions writing = conversion.writing;
    writing.sink = [this](std::string_view bytes) { return output_.write(bytes); };
    writer_ = make_writer(conversion.to->format, writing);
  }

  void add(const zol_v2::Zol& document, const std::string& name) {
    writer_->add(document, valid_utf8(name));
  }

  void finish(Notice* notice) {
    std::string bytes;
    Report report = writer_->finish(&bytes);
    if (output_.is_good() && !report) return notice->fail(path_, std::move(report.faults));
    output_.write(bytes);
    std::string message;
    notice->status = worse(notice->status, output_.commit(&message));
    if (!message.empty()) notice->add(path_, message);
    if (notice->status != ExitStatus::trouble) add_rest(path_, report, notice);
  }

 private:
  const std::string path_;
  WholeOutput output_;
  std::unique_ptr<zol_v2::interchange::Writer> writer_;
};

std::string counted_files(std::size_t count) { return counted(count, "file", "files"); }

// The name of what a file becomes, below the folder that it was found in.
class OutputNames {
 public:
  OutputNames(const Conversion& conversion, const BatchOptions& inputs, const std::string& folder)
      : folder_(inner_path(folder, "")), suffix_(conversion.suffix), suffixes_(inputs.suffixes) {
    if (!inputs.recursive) return;
    for (const std::string& file : inputs.files) roots_.push_back(inner_path(file, ""));
  }

  std::string of(const std::string& file) const {
    std::size_t root = 0;
    for (const std::string& each : roots_) {
      if (file.compare(0, each.size(), each) == 0) root = std::max(root, each.size());
    }
    std::string name = root != 0 ? file.substr(root) : file_name(file);
    const std::string_view suffix = suffix_in(name, suffixes_);
    name.resize(name.size() - suffix.size());
    return folder_ + name + suffix_;
  }

 private:
  std::string folder_, suffix_;
  std::vector<std::string> suffixes_, roots_;
};

}  // namespace

Notice convert_file(const Conversion& conversion, const std::string& input,
                    const std::string& output) {
  if (conversion.from == nullptr && conversion.to == nullptr) {
    return conversion.rewrites ? rewrite(conversion, input, output) : copy_text(input, output);
  }
  Loaded loaded = load(input, conversion);
  if (loaded.status != ExitStatus::ok) return std::move(loaded.notice);
  Notice notice = std::move(loaded.notice);
  if (conversion.to == nullptr) {
    save_imported(loaded, conversion, output, &notice);
  } else {
    FormatOutput written(conversion, output);
    written.add(*loaded.document, input);
    written.finish(&notice);
  }
  return notice;
}

ExitStatus collect(const Conversion& conversion, const BatchOptions& inputs,
                   const std::string& output) {
  Progress progress("Converting to " + output);
  FormatOutput written(conversion, output);
  ExitStatus status = ExitStatus::ok;
  ExitStatus ended = run_batch<Loaded>(
      inputs, "convert", [&](const std::string& file) { return load(file, conversion); },
      [&](const Loaded& loaded) {
        const auto silence = progress.step();
        loaded.notice.print();
        status = worse(status, loaded.status);
        if (loaded.status == ExitStatus::ok) written.add(*loaded.document, loaded.file);
      },
      [](ExitStatus) {});
  ended = worse(ended, conversion.keeps_going ? ExitStatus::ok : status);
  const auto silence = progress.silence();
  if (ended != ExitStatus::ok) return ended;
  Notice notice;
  written.finish(&notice);
  notice.print();
  return worse(status, notice.status);
}

ExitStatus convert_each(const Conversion& conversion, const BatchOptions& inputs,
                        const std::string& task, const std::string& folder) {
  struct Converted {
    ExitStatus status = ExitStatus::ok;
    Notice notice;
  };
  const OutputNames names(conversion, inputs, folder);
  // Two files may not become one. A million names would take too much room, so that only a number
  // stands for each.
  std::mutex mutex;
  std::unordered_set<std::size_t> taken;
  const auto work = [&](const std::string& file) {
    Converted converted;
    const std::string output = names.of(file);
    bool is_taken = false;
    {
      const std::lock_guard<std::mutex> lock(mutex);
      is_taken = !taken.insert(std::hash<std::string>()(output)).second;
    }
    if (is_taken) {
      converted.notice.fail(file, "would become " + output + ", as another file does");
    } else if (!conversion.replaces && is_there(output)) {
      converted.notice.fail(output, "exists; --force replaces it");
    } else if (!make_folders_of(output)) {
      converted.notice.fail(output, std::strerror(errno));
    } else {
      converted.notice = convert_file(conversion, file, output);
    }
    converted.status = converted.notice.status;
    return converted;
  };

  Progress progress("Converting");
  ExitStatus status = ExitStatus::ok;
  std::size_t counts[3] = {};
  std::size_t known = 0;
  const auto count = [&](ExitStatus one) {
    ++counts[static_cast<int>(one)];
    status = worse(status, one);
  };
  const ExitStatus ended = run_batch<Converted>(
      inputs, task, work,
      [&](const Converted& converted) {
        const auto silence = progress.step();
        converted.notice.print();
        count(converted.status);
      },
      [&](ExitStatus one) {
        ++known;
        count(one);
      });
  const auto silence = progress.silence();
  std::string text = counted_files(counts[0] + counts[1] + counts[2]) + ": " +
                     std::to_string(counts[0]) + " converted, " + std::to_string(counts[1]) +
                     " with faults";
  if (counts[2] != 0) text += ", " + std::to_string(counts[2]) + " that could not be";
  if (known != 0) text += "; " + std::to_string(known) + " were done before";
  print(text + '\n');
  return worse(status, ended);
}
