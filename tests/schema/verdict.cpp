// Judges documents: for each path on standard input one line with the code of loading, the line of
// the document where it ended, the code of writing the document again ("-" if it did not load), and
// the item of the fault. What was written stands beside the document, with ".written" behind its
// name.

#include <fstream>
#include <iostream>
#include <string>

#include "lmx/reader.h"
#include "model/Zol.h"

namespace {

// A fault's item is text of the document, and may hold line ends.
std::string on_one_line(std::string text) {
  for (char& c : text) {
    if (static_cast<unsigned char>(c) < ' ') c = ' ';
  }
  return text;
}

void judge(const std::string& path) {
  lmx::c_xml_reader_file reader(path.c_str());
  zol_v2::Zol document;
  const lmx::elmx_error loaded = reader.is_open() ? document.unmarshal(reader) : lmx::elmx_no_file;
  std::cout << loaded << ' ' << reader.get_line_no() << ' ';
  if (loaded != lmx::elmx_ok) {
    std::cout << "- " << on_one_line(reader.get_error_item_name()) << '\n';
    return;
  }
  std::string text;
  const lmx::elmx_error written = document.marshal(&text);
  std::cout << written << " \n";
  if (written == lmx::elmx_ok) {
    std::ofstream(path + ".written", std::ios::binary)
        .write(text.data(), std::streamsize(text.size()));
  }
}

}  // namespace

int main() {
  std::ios::sync_with_stdio(false);
  for (std::string path; std::getline(std::cin, path);) judge(path);
}
