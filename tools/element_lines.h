// Where the objects of a document stand in its text.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

// An element by the way down to it: "/Zol:Zol/Zol:Palette[1]/Zol:ColorSet[2]", the number counting
// the elements of that name in their parent, from 1.
struct ElementPlace {
  // The element itself, or its parent if `counts` is in use.
  std::string path;
  // The child behind those that are counted here by their names, "Zol:Color"; it is the first that
  // the parent has beyond them.
  bool is_child = false;
  std::map<std::string, unsigned> counts;
  int line = 0;
};

// "PARENT/NAME[NUMBER]".
std::string child_path(const std::string& parent, const std::string& name, unsigned number);

// Fills in the lines, and makes each child's path its own. What the text does not have keeps line
// 0, a child that it does not have the path and line of the parent.
void find_elements(const char* data, std::size_t size, std::vector<ElementPlace>* places);
