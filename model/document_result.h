// What Zol::writeString gives.
#pragma once

#include <string>
#include <utility>

#include "lmx/errors.h"

namespace zol_v2 {

// The text of a whole document in UTF-16, or the code that kept it from being written and no text.
class XMLDocumentResult {
 public:
  // A copy of the text, and the code.
  XMLDocumentResult(const std::wstring& document, lmx::elmx_error error)
      : document_(document), error_(error) {}
  // Takes the text over: a copy of a large one costs as much as writing it.
  XMLDocumentResult(std::wstring&& document, lmx::elmx_error error)
      : document_(std::move(document)), error_(error) {}

  // A copy of the text; empty unless the code is 0.
  std::wstring getXmlDocument() const { return document_; }
  // 0, or that of marshal: 46 where something that is required is missing.
  lmx::elmx_error getElmxError() const { return error_; }

 private:
  std::wstring document_;
  lmx::elmx_error error_;
};

}  // namespace zol_v2
