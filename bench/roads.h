// The ways through the library that are measured one by one, each with fixed inputs. What is here
// runs them; what counts instructions and what takes the time is built around it.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace bench {

struct Road {
  std::string name;
  std::string unit;  // "byte" of the text that goes in or comes out as UTF-8, or "call"
  double amount;     // units in one run
  std::function<void()> run;
};

// Conversions, numbers, dates, events and archive entries: what whole documents are made of.
std::vector<Road> side_roads();

// Small documents of each profile in and out, and getters through the flat interface.
std::vector<Road> document_roads();

// The same work as a side road by another library, as well as a careful user of it would do it.
struct Peer {
  std::string road;
  std::string library;
  std::function<void()> run;
};
std::vector<Peer> side_peers();

// Inputs that roads and peers share.
struct SideInputs {
  std::string accented;  // one character in ten of two bytes
  std::string cjk;       // nearly all of three
  std::string bytes;     // any
  std::string base64;    // of `bytes`
  std::vector<std::string> short_numbers;
  std::vector<std::string> long_numbers;  // of 17 digits
  std::string document;                   // XML as this library writes it
  std::string cdata;                      // the same amount in CDATA sections
  std::string comments;
  std::string deflated;  // `document`
};
const SideInputs& side_inputs();

std::u16string utf16_of(const std::string& utf8);

// Leaves the compiler no way to drop the work behind a value.
template <class T>
void keep(const T& value) {
#if defined(__GNUC__)
  asm volatile("" : : "r"(&value) : "memory");
#else
  static const void* volatile sink;
  sink = &value;
#endif
}

}  // namespace bench
