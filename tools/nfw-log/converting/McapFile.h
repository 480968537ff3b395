#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "Crc32.h"
#include "OutputFile.h"

namespace logtool {

/// Writes a container of messages (MCAP, version 0) from its begin to its end: messages in chunks of a MiB with an
/// index each, and at the end what a reader needs to go anywhere without reading all. Nothing is compressed: a reader
/// needs nothing but the container, and gzip or zstd may follow.
class McapFile {
 public:
  /// @param nOutput not owned, outlives the file
  explicit McapFile(OutputFile& nOutput);

  /// @param nSchema JSON schema @return the id
  uint16_t addSchema(std::string_view nName, std::string_view nSchema);
  uint16_t addChannel(uint16_t nSchema, std::string_view nTopic);
  /// @param nTimeNs since 1970 @param nJson as the channel's schema has it
  void addMessage(uint16_t nChannel, uint64_t nTimeNs, std::string_view nJson);
  void end();

 private:
  enum Opcode : uint8_t {
    HEADER = 0x01,
    FOOTER = 0x02,
    SCHEMA = 0x03,
    CHANNEL = 0x04,
    MESSAGE = 0x05,
    CHUNK = 0x06,
    MESSAGE_INDEX = 0x07,
    CHUNK_INDEX = 0x08,
    STATISTICS = 0x0B,
    SUMMARY_OFFSET = 0x0E,
    DATA_END = 0x0F
  };
  static constexpr size_t CHUNK_SIZE = 1024 * 1024;

  struct Span {
    uint64_t mFirst = UINT64_MAX, mLast = 0;
    void add(uint64_t nTime) {
      if (nTime < mFirst) mFirst = nTime;
      if (nTime > mLast) mLast = nTime;
    }
    void appendTo(std::string* npBytes) const;
  };
  using ChannelIndex = std::vector<std::pair<uint64_t, uint64_t>>;  // time, and place in the chunk

  static void appendRecord(Opcode nOpcode, std::string_view nContent, std::string* npBytes);
  void write(std::string_view nBytes);
  void writeRecord(Opcode nOpcode, std::string_view nContent);
  void endChunk();
  std::string statistics() const;

  OutputFile& mOutput;
  uint64_t mWritten = 0;
  Crc32 mSum;                                      // of what was written since the section's begin
  std::string mSchemas, mChannels, mChunkIndexes;  // records, which the summary repeats
  uint16_t mSchemaNum = 0, mChannelNum = 0;
  uint32_t mChunkNum = 0;
  std::string mChunk;
  Span mChunkSpan, mSpan;
  std::map<uint16_t, ChannelIndex> mIndex;  // of the chunk
  std::map<uint16_t, uint64_t> mMessageCounts;
};

}  // namespace logtool
