#include "McapFile.h"

#include "LittleBytes.h"

namespace logtool {

namespace {

const std::string_view MAGIC("\x89MCAP0\r\n", 8);
const size_t MESSAGE_HEAD_SIZE = 22;  // channel, number, and the time twice

}  // namespace

void McapFile::Span::appendTo(std::string* npBytes) const {
  appendLittle(mFirst == UINT64_MAX ? uint64_t{0} : mFirst, npBytes);
  appendLittle(mLast, npBytes);
}

McapFile::McapFile(OutputFile& nOutput) : mOutput(nOutput) {
  write(MAGIC);
  std::string lHeader;
  appendCounted("", &lHeader);  // no profile: what the messages are, the schemas tell
  appendCounted("nfw-log", &lHeader);
  writeRecord(HEADER, lHeader);
}

void McapFile::write(std::string_view nBytes) {
  mOutput.write(nBytes);
  mWritten += nBytes.size();
  mSum.add(nBytes);
}

void McapFile::appendRecord(Opcode nOpcode, std::string_view nContent, std::string* npBytes) {
  npBytes->push_back(static_cast<char>(nOpcode));
  appendLittle(static_cast<uint64_t>(nContent.size()), npBytes);
  npBytes->append(nContent);
}

void McapFile::writeRecord(Opcode nOpcode, std::string_view nContent) {
  std::string lRecord;
  appendRecord(nOpcode, nContent, &lRecord);
  write(lRecord);
}

uint16_t McapFile::addSchema(std::string_view nName, std::string_view nSchema) {
  std::string lContent;
  appendLittle(++mSchemaNum, &lContent);
  appendCounted(nName, &lContent);
  appendCounted("jsonschema", &lContent);
  appendCounted(nSchema, &lContent);
  appendRecord(SCHEMA, lContent, &mSchemas);
  appendRecord(SCHEMA, lContent, &mChunk);
  return mSchemaNum;
}

uint16_t McapFile::addChannel(uint16_t nSchema, std::string_view nTopic) {
  std::string lContent;
  appendLittle(++mChannelNum, &lContent);
  appendLittle(nSchema, &lContent);
  appendCounted(nTopic, &lContent);
  appendCounted("json", &lContent);
  appendLittle(uint32_t{0}, &lContent);  // no further properties
  appendRecord(CHANNEL, lContent, &mChannels);
  appendRecord(CHANNEL, lContent, &mChunk);
  return mChannelNum;
}

void McapFile::addMessage(uint16_t nChannel, uint64_t nTimeNs, std::string_view nJson) {
  mIndex[nChannel].emplace_back(nTimeNs, mChunk.size());
  mChunkSpan.add(nTimeNs);
  mSpan.add(nTimeNs);
  mChunk.push_back(static_cast<char>(MESSAGE));
  appendLittle(static_cast<uint64_t>(MESSAGE_HEAD_SIZE + nJson.size()), &mChunk);
  appendLittle(nChannel, &mChunk);
  appendLittle(static_cast<uint32_t>(mMessageCounts[nChannel]++), &mChunk);
  appendLittle(nTimeNs, &mChunk);  // logged
  appendLittle(nTimeNs, &mChunk);  // published
  mChunk += nJson;
  if (mChunk.size() >= CHUNK_SIZE) endChunk();
}

void McapFile::endChunk() {
  if (mChunk.empty()) return;
  Crc32 lSum;
  lSum.add(mChunk);
  std::string lHead;
  mChunkSpan.appendTo(&lHead);
  appendLittle(static_cast<uint64_t>(mChunk.size()), &lHead);
  appendLittle(lSum.get(), &lHead);
  appendCounted("", &lHead);  // no compression
  appendLittle(static_cast<uint64_t>(mChunk.size()), &lHead);
  const uint64_t lBegin = mWritten;
  std::string lFrame(1, static_cast<char>(CHUNK));
  appendLittle(static_cast<uint64_t>(lHead.size() + mChunk.size()), &lFrame);
  write(lFrame + lHead);
  write(mChunk);

  const uint64_t lIndexBegin = mWritten;
  std::string lIndex, lPlaces;
  mChunkSpan.appendTo(&lIndex);
  appendLittle(lBegin, &lIndex);
  appendLittle(lIndexBegin - lBegin, &lIndex);
  for (const auto& [lChannel, lMessages] : mIndex) {
    appendLittle(lChannel, &lPlaces);
    appendLittle(mWritten, &lPlaces);
    std::string lContent;
    appendLittle(lChannel, &lContent);
    appendLittle(static_cast<uint32_t>(lMessages.size() * 2 * sizeof(uint64_t)), &lContent);
    for (const auto& [lTime, lPlace] : lMessages) {
      appendLittle(lTime, &lContent);
      appendLittle(lPlace, &lContent);
    }
    writeRecord(MESSAGE_INDEX, lContent);
  }
  appendCounted(lPlaces, &lIndex);
  appendLittle(mWritten - lIndexBegin, &lIndex);
  appendCounted("", &lIndex);
  appendLittle(static_cast<uint64_t>(mChunk.size()), &lIndex);
  appendLittle(static_cast<uint64_t>(mChunk.size()), &lIndex);
  appendRecord(CHUNK_INDEX, lIndex, &mChunkIndexes);
  ++mChunkNum;
  mChunk.clear();
  mIndex.clear();
  mChunkSpan = {};
}

std::string McapFile::statistics() const {
  uint64_t lMessages = 0;
  std::string lCounts, lContent;
  for (const auto& [lChannel, lCount] : mMessageCounts) {
    appendLittle(lChannel, &lCounts);
    appendLittle(lCount, &lCounts);
    lMessages += lCount;
  }
  appendLittle(lMessages, &lContent);
  appendLittle(mSchemaNum, &lContent);
  appendLittle(static_cast<uint32_t>(mChannelNum), &lContent);
  appendLittle(uint32_t{0}, &lContent);  // attachments
  appendLittle(uint32_t{0}, &lContent);  // metadata
  appendLittle(mChunkNum, &lContent);
  mSpan.appendTo(&lContent);
  appendCounted(lCounts, &lContent);
  return lContent;
}

void McapFile::end() {
  endChunk();
  std::string lSum;
  appendLittle(mSum.get(), &lSum);
  writeRecord(DATA_END, lSum);

  mSum = {};
  const uint64_t lSummary = mWritten;
  std::string lStatistics, lOffsets;
  appendRecord(STATISTICS, statistics(), &lStatistics);
  const std::pair<Opcode, const std::string*> GROUPS[] = {
      {SCHEMA, &mSchemas}, {CHANNEL, &mChannels}, {STATISTICS, &lStatistics}, {CHUNK_INDEX, &mChunkIndexes}};
  for (const auto& [lOpcode, lpRecords] : GROUPS) {
    if (lpRecords->empty()) continue;
    std::string lOffset(1, static_cast<char>(lOpcode));
    appendLittle(mWritten, &lOffset);
    appendLittle(static_cast<uint64_t>(lpRecords->size()), &lOffset);
    appendRecord(SUMMARY_OFFSET, lOffset, &lOffsets);
    write(*lpRecords);
  }
  const uint64_t lOffsetBegin = mWritten;
  std::string lFooter(1, static_cast<char>(FOOTER));
  appendLittle(uint64_t{2 * sizeof(uint64_t) + sizeof(uint32_t)}, &lFooter);
  appendLittle(lSummary, &lFooter);
  appendLittle(lOffsetBegin, &lFooter);
  write(lOffsets + lFooter);
  std::string lLast;
  appendLittle(mSum.get(), &lLast);
  write(lLast);
  write(MAGIC);
}

}  // namespace logtool
