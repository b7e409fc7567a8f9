// Document files in an archive, against zlib alone on the same bytes in the same run:
//   zol_bench_files [DIRECTORY]
// Times are processor time, the best of several rounds that alternate between the two sides. The
// peers: for loading, reading the archive's bytes, inflating them with their checksum and parsing
// the text; for writing, marshalling, deflating at the same level with the checksum, and writing
// the outcome. The peak of memory is compared with that of holding the text and parsing it.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <zlib.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <string>

#include "bench/documents.h"
#include "facade/files.h"
#include "model/Zol.h"

namespace {

constexpr std::size_t k_size = 20 * 1000 * 1000;
constexpr int k_rounds = 7;

double processor_seconds() {
  timespec now = {};
  ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

double seconds_of(const std::function<void()>& work) {
  const double start = processor_seconds();
  work();
  return processor_seconds() - start;
}

void require(bool is_true, const char* what) {
  if (is_true) return;
  std::fprintf(stderr, "failed: %s\n", what);
  std::exit(1);
}

std::string read_file(const std::string& path) {
  std::ifstream in(path, std::ios::binary | std::ios::ate);
  std::string bytes(static_cast<std::size_t>(in.tellg()), '\0');
  in.seekg(0);
  in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  return bytes;
}

std::uint32_t number_at(const std::string& bytes, std::size_t offset) {
  std::uint32_t value = 0;
  for (std::size_t i = 4; i-- != 0;) {
    value = (value << 8) | static_cast<unsigned char>(bytes[offset + i]);
  }
  return value;
}

// The one entry of an archive that was written by this library.
std::unique_ptr<char[]> inflate_entry(const std::string& archive, std::size_t* size) {
  const std::size_t name_size = number_at(archive, 26) & 0xFFFF;
  const std::uint32_t packed = number_at(archive, 18);
  *size = number_at(archive, 22);
  std::unique_ptr<char[]> text(new char[*size]);
  z_stream stream = {};
  require(::inflateInit2(&stream, -MAX_WBITS) == Z_OK, "inflateInit2");
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(archive.data())) + 30 + name_size;
  stream.avail_in = packed;
  stream.next_out = reinterpret_cast<Bytef*>(text.get());
  stream.avail_out = static_cast<uInt>(*size);
  require(::inflate(&stream, Z_FINISH) == Z_STREAM_END, "inflate");
  ::inflateEnd(&stream);
  const uLong crc = ::crc32(0, reinterpret_cast<Bytef*>(text.get()), static_cast<uInt>(*size));
  require(crc == number_at(archive, 14), "checksum");
  return text;
}

std::size_t deflate_text(const std::string& text, const std::string& path) {
  z_stream stream = {};
  require(::deflateInit2(&stream, -1, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY) == Z_OK,
          "deflateInit2");
  std::string out(::deflateBound(&stream, static_cast<uLong>(text.size())), '\0');
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
  stream.avail_in = static_cast<uInt>(text.size());
  stream.next_out = reinterpret_cast<Bytef*>(out.data());
  stream.avail_out = static_cast<uInt>(out.size());
  require(::deflate(&stream, Z_FINISH) == Z_STREAM_END, "deflate");
  out.resize(stream.total_out);
  ::deflateEnd(&stream);
  const uLong crc =
      ::crc32(0, reinterpret_cast<const Bytef*>(text.data()), static_cast<uInt>(text.size()));
  std::ofstream file(path, std::ios::binary);
  file << out << crc;
  return out.size();
}

void compare(const char* what, const std::function<void()>& ours,
             const std::function<void()>& peer) {
  double our_best = 1e9;
  double peer_best = 1e9;
  for (int round = 0; round < k_rounds; ++round) {
    peer_best = std::min(peer_best, seconds_of(peer));
    our_best = std::min(our_best, seconds_of(ours));
  }
  std::printf("%-34s %8.1f ms, zlib alone %8.1f ms, ratio %.3f\n", what, our_best * 1e3,
              peer_best * 1e3, our_best / peer_best);
}

// In KiB, of a process of its own.
long peak_of(const std::function<void()>& work) {
  const pid_t child = ::fork();
  if (child == 0) {
    work();
    ::_exit(0);
  }
  int status = 0;
  rusage usage = {};
  ::wait4(child, &status, 0, &usage);
  require(WIFEXITED(status) && WEXITSTATUS(status) == 0, "the measured process");
  return usage.ru_maxrss;
}

}  // namespace

int main(int argument_count, char** arguments) {
  const std::string base =
      std::string(argument_count > 1 ? arguments[1] : "/tmp") + "/zol_bench_files";
  const auto wide = [&base](const char* suffix) {
    const std::string path = base + suffix;
    return std::wstring(path.begin(), path.end());
  };
  // A child begins with its parent's memory, so that what stands in front is done by children too.
  peak_of([&] {
    zol_v2::Zol document;
    const std::string text = bench::make_document(bench::Profile::mixed, k_size);
    require(document.unmarshal(text) == lmx::elmx_ok, "the document");
    require(document.writeFile(wide(".zolz")) == lmx::elmx_ok, "writeFile");
    require(document.writeFile(wide(".zol")) == lmx::elmx_ok, "writeFile");
  });
  const long ours = peak_of([&] {
    zol_v2::Zol document;
    require(document.loadFile(wide(".zolz")) == lmx::elmx_ok, "loadFile");
  });
  const long bare = peak_of([&] {
    const std::string text = read_file(base + ".zol");
    zol_v2::Zol document;
    require(document.unmarshal(text.data(), text.size()) == lmx::elmx_ok, "unmarshal");
  });
  std::printf("peak while loading: %ld KiB, of text and tree alone %ld KiB, difference %ld KiB\n",
              ours, bare, ours - bare);

  const auto load_peer = [&] {
    const std::string archive = read_file(base + ".zolz");
    std::size_t size = 0;
    const auto text = inflate_entry(archive, &size);
    zol_v2::Zol document;
    require(document.unmarshal(text.get(), size) == lmx::elmx_ok, "unmarshal");
  };
  compare(
      "loadFile of .zolz",
      [&] {
        zol_v2::Zol document;
        require(document.loadFile(wide(".zolz")) == lmx::elmx_ok, "loadFile");
      },
      load_peer);
  compare(
      "openFile of .zolz",
      [&] {
        zol_v2::Zol document;
        require(zol_v2::openFile(document, wide(".zolz")) == lmx::elmx_ok, "openFile");
      },
      load_peer);

  zol_v2::Zol document;
  require(document.loadFile(wide(".zol")) == lmx::elmx_ok, "loadFile");
  const auto write_peer = [&] {
    std::string text;
    require(document.marshal(&text) == lmx::elmx_ok, "marshal");
    deflate_text(text, base + ".deflated");
  };
  compare(
      "writeFile of .zolz", [&] { require(document.writeFile(wide(".zolz")) == 0, "writeFile"); },
      write_peer);
  compare(
      "saveFile of .zolz",
      [&] { require(zol_v2::saveFile(document, wide(".zolz")) == 0, "saveFile"); }, write_peer);
  for (const char* suffix : {".zol", ".zolz", ".deflated"}) std::remove((base + suffix).c_str());
}
