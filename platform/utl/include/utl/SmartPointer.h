/// @file
/// A shared pointer.
#pragma once

#include <memory>

namespace utl {

/// A shared, reference-counted pointer; the count is atomic, the pointer itself belongs to one thread at a time. What
/// the last one leaves is deleted on the thread that leaves it.
///
/// @code
/// lManager.addComponent(utl::SmartPointer<nfw::Component>(new MapComponent));
/// @endcode
template <class T>
class SmartPointer {
 public:
  SmartPointer() = default;
  explicit SmartPointer(T* npObject) : mpObject(npObject) {}
  template <class U>
  SmartPointer(const SmartPointer<U>& nOther) : mpObject(nOther.mpObject) {}  // NOLINT: implicit like a base pointer

  T* get() const { return mpObject.get(); }
  T* operator->() const { return mpObject.get(); }
  T& operator*() const { return *mpObject; }
  explicit operator bool() const { return mpObject != nullptr; }
  bool isNull() const { return mpObject == nullptr; }

  friend bool operator==(const SmartPointer& nLeft, const SmartPointer& nRight) {
    return nLeft.mpObject == nRight.mpObject;
  }
  friend bool operator!=(const SmartPointer& nLeft, const SmartPointer& nRight) { return !(nLeft == nRight); }

 private:
  template <class U>
  friend class SmartPointer;
  std::shared_ptr<T> mpObject;
};

}  // namespace utl
