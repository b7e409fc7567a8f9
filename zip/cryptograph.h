// What stands between the compressor and the storage while an encrypted entry is open. The library
// has none of its own; a client that drives a compressor by itself may hand one in.
#pragma once

#include <cstdint>

#include "port/export.h"

class CZipAutoBuffer;
class CZipFileHeader;
class CZipStorage;

class ZOL_API CZipCryptograph {
 public:
  virtual bool InitDecode(CZipAutoBuffer& password, CZipFileHeader& header,
                          CZipStorage& storage) = 0;
  virtual void InitEncode(CZipAutoBuffer& password, CZipFileHeader& header,
                          CZipStorage& storage) = 0;
  // In place.
  virtual void Decode(char* buffer, std::uint32_t size) = 0;
  virtual void Encode(char* buffer, std::uint32_t size) = 0;
  virtual void FinishDecode(CZipFileHeader& header, CZipStorage& storage) = 0;
  virtual void FinishEncode(CZipFileHeader& header, CZipStorage& storage) = 0;
  virtual bool CanHandle(std::uint8_t encryptionMethod) const = 0;
  virtual ~CZipCryptograph() = default;
};
