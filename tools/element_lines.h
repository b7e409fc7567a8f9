// Where the elements of a document stand in its text.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

// An element by the way down to it: "/Zol:Zol/Zol:Palette[1]/Zol:ColorSet[2]", the number counting
// the elements of that name in their parent, from 1.
struct ElementPlace {
  std::string path;
  int line = 0;
};

// "PARENT/NAME[NUMBER]".
std::string child_path(const std::string& parent, const std::string& name, unsigned number);

// Fills in the lines of what the text has.
void find_elements(const char* data, std::size_t size, std::vector<ElementPlace>* places);
