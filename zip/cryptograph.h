// What stands between the compressor and the storage while an encrypted entry is open. The library
// has none of its own; a client that drives a compressor by itself may hand one in.
#pragma once

#include <cstdint>

#include "port/export.h"

class CZipAutoBuffer;
class CZipFileHeader;
class CZipStorage;

// Codes the compressed bytes of one entry, piece by piece.
class ZOL_API CZipCryptograph {
 public:
  // False for a wrong password. Called by the client who hands the object in, never by the library.
  virtual bool InitDecode(CZipAutoBuffer& password, CZipFileHeader& header,
                          CZipStorage& storage) = 0;
  // The same for a new entry.
  virtual void InitEncode(CZipAutoBuffer& password, CZipFileHeader& header,
                          CZipStorage& storage) = 0;
  // In place.
  virtual void Decode(char* buffer, std::uint32_t size) = 0;
  // In place.
  virtual void Encode(char* buffer, std::uint32_t size) = 0;
  // Behind the data; the client calls it.
  virtual void FinishDecode(CZipFileHeader& header, CZipStorage& storage) = 0;
  // Behind the data; the client calls it.
  virtual void FinishEncode(CZipFileHeader& header, CZipStorage& storage) = 0;
  // By CZipFileHeader::encryption_method.
  virtual bool CanHandle(std::uint8_t encryptionMethod) const = 0;
  virtual ~CZipCryptograph() = default;
};
