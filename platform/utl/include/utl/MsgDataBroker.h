/// @file
/// The fields of a message on their way through a queue.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace utl {

/// Carries the fields of a message between its object and its queued form. Fields are read in the order in which they
/// were written. Every operation returns false when it could not be done (no room, too little data, wrong direction);
/// the target of a failed read keeps its value. Used inside Msg::storeDataTo and Msg::restoreDataFrom only.
///
/// What a field counts of the message size that a thread is made for: 1 byte for a bool, char or 8-bit value, 2, 4 and
/// 8 for the wider ones, 4 for a pointer, n for a run of n bytes, 4 n for a run of n wide characters.
class MsgDataBroker {
 public:
  virtual ~MsgDataBroker() = default;

  virtual bool beginInput() = 0;   ///< from here on fields are written, the first one first
  virtual bool beginOutput() = 0;  ///< from here on fields are read, the first one first

  bool write(bool nValue) { return putValue(nValue); }
  bool write(char nValue) { return putValue(nValue); }
  bool write(int8_t nValue) { return putValue(nValue); }
  bool write(uint8_t nValue) { return putValue(nValue); }
  bool write(int16_t nValue) { return putValue(nValue); }
  bool write(uint16_t nValue) { return putValue(nValue); }
  bool write(int32_t nValue) { return putValue(nValue); }
  bool write(uint32_t nValue) { return putValue(nValue); }
  bool write(int64_t nValue) { return putValue(nValue); }
  bool write(uint64_t nValue) { return putValue(nValue); }
  bool write(float nValue) { return putValue(nValue); }
  bool write(double nValue) { return putValue(nValue); }
  template <class T>
  bool write(T* npValue) {
    const void* const lpValue = npValue;
    return put(POINTER, &lpValue, 1);
  }

  bool read(bool* npValue) { return takeValue(npValue); }
  bool read(char* npValue) { return takeValue(npValue); }
  bool read(int8_t* npValue) { return takeValue(npValue); }
  bool read(uint8_t* npValue) { return takeValue(npValue); }
  bool read(int16_t* npValue) { return takeValue(npValue); }
  bool read(uint16_t* npValue) { return takeValue(npValue); }
  bool read(int32_t* npValue) { return takeValue(npValue); }
  bool read(uint32_t* npValue) { return takeValue(npValue); }
  bool read(int64_t* npValue) { return takeValue(npValue); }
  bool read(uint64_t* npValue) { return takeValue(npValue); }
  bool read(float* npValue) { return takeValue(npValue); }
  bool read(double* npValue) { return takeValue(npValue); }
  template <class T>
  bool read(T** npValue) {  ///< the same T as was written: the address is carried, not converted
    const void* lpValue = nullptr;
    if (!take(POINTER, &lpValue, 1)) return false;
    *npValue = static_cast<T*>(const_cast<void*>(lpValue));
    return true;
  }

  bool writeBytes(const void* npData, unsigned int nCount) { return put(BYTES, npData, nCount); }
  bool writeChars(const char* npData, unsigned int nCount) { return put(BYTES, npData, nCount); }
  bool writeWideChars(const wchar_t* npData, unsigned int nCount) { return put(WIDE_CHARS, npData, nCount); }
  bool readBytes(void* npData, unsigned int nCount) { return take(BYTES, npData, nCount); }
  bool readChars(char* npData, unsigned int nCount) { return take(BYTES, npData, nCount); }
  bool readWideChars(wchar_t* npData, unsigned int nCount) { return take(WIDE_CHARS, npData, nCount); }

 protected:
  /// What an item is. `nCount` is the bytes of a VALUE (1, 2, 4 or 8) and of a run of BYTES, the number of wide
  /// characters of WIDE_CHARS, and 1 for a POINTER.
  enum ItemKind { VALUE, POINTER, BYTES, WIDE_CHARS };

  virtual bool put(ItemKind nKind, const void* npData, unsigned int nCount) = 0;
  virtual bool take(ItemKind nKind, void* npData, unsigned int nCount) = 0;

  /// The bytes of a direction, from the next field's on. As long as they last, a number goes in or out without a call;
  /// an empty stretch, as it is at first, leaves every field to put() and take().
  struct WriteStretch {
    unsigned char* mpNext = nullptr;
    unsigned char* mpEnd = nullptr;
  } mWrite;
  struct ReadStretch {
    const unsigned char* mpNext = nullptr;
    const unsigned char* mpEnd = nullptr;
  } mRead;

 private:
  template <class T>
  bool putValue(T nValue) {
    if (mWrite.mpEnd - mWrite.mpNext < static_cast<ptrdiff_t>(sizeof nValue)) return put(VALUE, &nValue, sizeof nValue);
    std::memcpy(mWrite.mpNext, &nValue, sizeof nValue);
    mWrite.mpNext += sizeof nValue;
    return true;
  }
  template <class T>
  bool takeValue(T* npValue) {
    if (mRead.mpEnd - mRead.mpNext < static_cast<ptrdiff_t>(sizeof *npValue)) {
      return take(VALUE, npValue, sizeof *npValue);
    }
    std::memcpy(npValue, mRead.mpNext, sizeof *npValue);
    mRead.mpNext += sizeof *npValue;
    return true;
  }
};

}  // namespace utl
