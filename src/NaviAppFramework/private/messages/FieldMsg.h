// Thread messages whose fields are listed once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "utl/Msg.h"

namespace nfw {

/// The id of an object that is only restored into.
const int RESTORE_MSG_ID = static_cast<int>(0x80000000u);

/// The library's own message ids count up from 0x80000C01; each listener has its own list.
constexpr int ownMsgId(unsigned int nNumber) { return static_cast<int>(0x80000C00u + nNumber); }

namespace fields {

/// Stores one field: numbers, flags and enumerations by their width, arrays of numbers as one run, pointers by address,
/// records field by field.
struct Store {
  utl::MsgDataBroker& mBroker;

  template <class T>
  bool operator()(const T& nField) const {
    if constexpr (std::is_enum_v<T>) {
      return mBroker.write(static_cast<int32_t>(nField));
    } else if constexpr (std::is_class_v<T>) {
      return eachField(nField, *this);  // of the record, found in its namespace
    } else {
      return mBroker.write(nField);
    }
  }
  template <class T, size_t N>
  bool operator()(const T (&nField)[N]) const {
    if constexpr (std::is_arithmetic_v<T>) {
      return mBroker.writeBytes(nField, sizeof nField);
    } else {
      for (const T& lItem : nField) {
        if (!(*this)(lItem)) return false;
      }
      return true;
    }
  }
};

/// Restores one field; the mirror of Store.
struct Restore {
  utl::MsgDataBroker& mBroker;

  template <class T>
  bool operator()(T& nField) const {
    if constexpr (std::is_enum_v<T>) {
      int32_t lValue = static_cast<int32_t>(nField);
      if (!mBroker.read(&lValue)) return false;
      nField = static_cast<T>(lValue);
      return true;
    } else if constexpr (std::is_class_v<T>) {
      return eachField(nField, *this);  // of the record, found in its namespace
    } else {
      return mBroker.read(&nField);
    }
  }
  template <class T, size_t N>
  bool operator()(T (&nField)[N]) const {
    if constexpr (std::is_arithmetic_v<T>) {
      return mBroker.readBytes(nField, sizeof nField);
    } else {
      for (T& lItem : nField) {
        if (!(*this)(lItem)) return false;
      }
      return true;
    }
  }
};

}  // namespace fields

/// Base of a message class M, which lists its fields in one static operation:
/// `template <class Self, class Visit> static bool fields(Self& nSelf, Visit nVisit)`
/// and tells its name by `static constexpr const char* NAME`.
template <class M>
class FieldMsg : public utl::Msg {
 public:
  explicit FieldMsg(int nMsgId = RESTORE_MSG_ID) : utl::Msg(nMsgId) {}

  bool storeDataTo(utl::MsgDataBroker& nBroker) const override {
    return M::fields(static_cast<const M&>(*this), fields::Store{nBroker});
  }
  bool restoreDataFrom(utl::MsgDataBroker& nBroker) override {
    return M::fields(static_cast<M&>(*this), fields::Restore{nBroker});
  }
};

/// A message that carries one pointer to something that outlives it.
template <class T>
class PointerMsg : public FieldMsg<PointerMsg<T>> {
 public:
  static constexpr const char* NAME = "PointerMsg";

  explicit PointerMsg(int nMsgId = RESTORE_MSG_ID, T* npObject = nullptr)
      : FieldMsg<PointerMsg<T>>(nMsgId), mpObject(npObject) {}
  template <class Self, class Visit>
  static bool fields(Self& nSelf, Visit nVisit) {
    return nVisit(nSelf.mpObject);
  }

  T* mpObject;
};

}  // namespace nfw
