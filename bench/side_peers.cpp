#include <absl/strings/escaping.h>
#include <expat.h>
#include <fast_float/fast_float.h>
#include <openssl/evp.h>
#include <unicode/ustring.h>
#include <utf8.h>
#include <zlib.h>

#include <stdexcept>

#include "bench/roads.h"

namespace bench {
namespace {

void XMLCALL on_start(void* count, const XML_Char*, const XML_Char**) {
  ++*static_cast<std::size_t*>(count);
}
void XMLCALL on_end(void* count, const XML_Char*) { ++*static_cast<std::size_t*>(count); }
void XMLCALL on_text(void* text, const XML_Char* bytes, int size) {
  static_cast<void>(text);
  keep(bytes[size - 1]);
}

void walk_with_expat(const std::string& bytes) {
  const XML_Parser parser = XML_ParserCreate(nullptr);
  std::size_t events = 0;
  XML_SetUserData(parser, &events);
  XML_SetElementHandler(parser, on_start, on_end);
  XML_SetCharacterDataHandler(parser, on_text);
  const auto status = XML_Parse(parser, bytes.data(), static_cast<int>(bytes.size()), 1);
  XML_ParserFree(parser);
  if (status != XML_STATUS_OK || events < 2) throw std::runtime_error("expat");
}

std::string as_bytes(const std::u16string& units) {
  std::string bytes;
  for (const char16_t unit : units) {
    bytes += static_cast<char>(unit & 0xFF);
    bytes += static_cast<char>(unit >> 8);
  }
  return bytes;
}

}  // namespace

// Buffers of sufficient size stand ready, which is more than a caller of this library has to do.
std::vector<Peer> side_peers() {
  const SideInputs& in = side_inputs();
  std::vector<Peer> peers;
  const auto add_text = [&peers](const std::string& name, const std::string& utf8) {
    const std::u16string wide = utf16_of(utf8);
    peers.push_back({name + " to wide", "utfcpp", [&utf8] {
                       static std::u16string out(1 << 20, u'\0');
                       keep(*utf8::utf8to16(utf8.begin(), utf8.end(), out.begin()));
                     }});
    peers.push_back({name + " to wide", "ICU", [&utf8] {
                       static std::u16string out(1 << 20, u'\0');
                       UErrorCode error = U_ZERO_ERROR;
                       ::u_strFromUTF8(out.data(), 1 << 20, nullptr, utf8.data(),
                                       static_cast<int32_t>(utf8.size()), &error);
                       keep(out);
                     }});
    peers.push_back({name + " from wide", "utfcpp", [wide] {
                       static std::string out(1 << 20, '\0');
                       keep(*utf8::utf16to8(wide.begin(), wide.end(), out.begin()));
                     }});
    const auto narrow_with_icu = [wide] {
      static std::string out(1 << 20, '\0');
      UErrorCode error = U_ZERO_ERROR;
      ::u_strToUTF8(out.data(), 1 << 20, nullptr, wide.data(), static_cast<int32_t>(wide.size()),
                    &error);
      keep(out);
    };
    peers.push_back({name + " from wide", "ICU", narrow_with_icu});
    if (name == "ASCII text") peers.push_back({"UTF-16 to UTF-8", "ICU", narrow_with_icu});
  };
  add_text("accented text", in.accented);
  add_text("CJK text", in.cjk);
  add_text("ASCII text", in.document);

  peers.push_back({"base64 in", "OpenSSL, unchecked", [&in] {
                     static std::string out(in.base64.size(), '\0');
                     ::EVP_DecodeBlock(reinterpret_cast<unsigned char*>(out.data()),
                                       reinterpret_cast<const unsigned char*>(in.base64.data()),
                                       static_cast<int>(in.base64.size()));
                     keep(out);
                   }});
  peers.push_back({"base64 in", "Abseil", [&in] {
                     std::string out;
                     if (!absl::Base64Unescape(in.base64, &out)) throw std::runtime_error("absl");
                     keep(out);
                   }});
  peers.push_back({"base64 out", "OpenSSL", [&in] {
                     static std::string out(in.base64.size() + 1, '\0');
                     ::EVP_EncodeBlock(reinterpret_cast<unsigned char*>(out.data()),
                                       reinterpret_cast<const unsigned char*>(in.bytes.data()),
                                       static_cast<int>(in.bytes.size()));
                     keep(out);
                   }});
  peers.push_back({"base64 out", "Abseil", [&in] {
                     std::string out;
                     absl::Base64Escape(in.bytes, &out);
                     keep(out);
                   }});

  const auto add_numbers = [&peers](const char* road, const std::vector<std::string>& texts) {
    peers.push_back({road, "fast_float", [&texts] {
                       double sum = 0;
                       for (const std::string& text : texts) {
                         double value = 0;
                         fast_float::from_chars(text.data(), text.data() + text.size(), value);
                         sum += value;
                       }
                       keep(sum);
                     }});
  };
  add_numbers("double of 17 digits in", in.long_numbers);
  add_numbers("short double in", in.short_numbers);

  peers.push_back({"events of UTF-8", "expat", [&in] { walk_with_expat(in.document); }});
  peers.push_back({"events of UTF-16", "expat",
                   [bytes = as_bytes(u"\xFEFF<?xml version=\"1.0\" encoding=\"UTF-16\"?>" +
                                     utf16_of(in.document.substr(in.document.find("?>") + 2)))] {
                     walk_with_expat(bytes);
                   }});
  peers.push_back({"events of CDATA", "expat", [&in] { walk_with_expat(in.cdata); }});
  peers.push_back({"events of comments", "expat", [&in] { walk_with_expat(in.comments); }});

  peers.push_back({"archive entry in", "zlib", [&in] {
                     std::string out(in.document.size(), '\0');
                     z_stream stream = {};
                     ::inflateInit2(&stream, -MAX_WBITS);
                     stream.next_in =
                         reinterpret_cast<Bytef*>(const_cast<char*>(in.deflated.data()));
                     stream.avail_in = static_cast<uInt>(in.deflated.size());
                     stream.next_out = reinterpret_cast<Bytef*>(out.data());
                     stream.avail_out = static_cast<uInt>(out.size());
                     const int code = ::inflate(&stream, Z_FINISH);
                     ::inflateEnd(&stream);
                     if (code != Z_STREAM_END) throw std::runtime_error("zlib");
                     keep(::crc32(0, reinterpret_cast<const Bytef*>(out.data()),
                                  static_cast<uInt>(out.size())));
                   }});
  return peers;
}

}  // namespace bench
