// The listeners of a service, called last attached first, which may come and go while they are called.
#pragma once

#include <atomic>

#include "utl/Array.h"

namespace nfw {

/// Holds listeners as addresses; ListenerList gives them their class. It belongs to one thread: attach, detach and
/// walks are made there, also from inside a walk.
class ListenerTable {
 public:
  ListenerTable(unsigned int nCapacity, bool nGrow) : mEntries(nCapacity, nGrow) {}
  ListenerTable(const ListenerTable&) = delete;
  ListenerTable& operator=(const ListenerTable&) = delete;

  /// Appends; one that is there already stays where it is, and counts as attached anew. False when there is no room.
  bool attach(void* npListener);
  /// Removes; walks under way neither skip nor repeat another listener.
  void detach(const void* npListener);
  /// The same, unless it was attached behind the attachment of this number: for a request that was on its way.
  void detach(const void* npListener, unsigned int nLastNumber);
  unsigned int getLastNumber() const { return mLastNumber; }  ///< of the attachments so far; any thread
  static bool isLater(unsigned int nNumber, unsigned int nOther) { return static_cast<int>(nNumber - nOther) > 0; }
  unsigned int size() const { return mEntries.size(); }
  /// From any thread and for good: no call of a listener begins any more, not in walks under way either.
  void mute() { mIsMuted = true; }

  /// From the last attached to the first. One attached meanwhile is not met. A walk may be made inside another's call.
  class Walk {
   public:
    explicit Walk(ListenerTable& nTable);
    ~Walk();
    Walk(const Walk&) = delete;
    Walk& operator=(const Walk&) = delete;

    void* next();  ///< null at the end

   private:
    friend class ListenerTable;
    ListenerTable& mTable;
    Walk* const mpOuter;   // the walk in whose call this one runs
    unsigned int mCursor;  // index of the listener being called; the size before the first
  };

 private:
  struct Entry {
    void* mpListener = nullptr;
    unsigned int mNumber = 0;
  };

  int indexOf(const void* npListener) const;
  void removeAt(unsigned int nIndex);

  utl::Array<Entry> mEntries;
  std::atomic<unsigned int> mLastNumber{0};
  std::atomic<bool> mIsMuted{false};
  Walk* mpWalk = nullptr;  // the innermost walk under way
};

/// A ListenerTable of one listener class.
template <class Listener>
class ListenerList {
 public:
  ListenerList(unsigned int nCapacity, bool nGrow) : mTable(nCapacity, nGrow) {}

  bool attach(Listener* npListener) { return mTable.attach(npListener); }
  void detach(const Listener* npListener) { mTable.detach(npListener); }
  void detach(const Listener* npListener, unsigned int nLastNumber) { mTable.detach(npListener, nLastNumber); }
  unsigned int getLastNumber() const { return mTable.getLastNumber(); }
  unsigned int size() const { return mTable.size(); }
  void mute() { mTable.mute(); }

  /// Calls `nCall(listener)` for each, last attached first.
  template <class Call>
  void forEach(Call nCall) {
    ListenerTable::Walk lWalk(mTable);
    while (void* const lpListener = lWalk.next()) nCall(*static_cast<Listener*>(lpListener));
  }

 private:
  ListenerTable mTable;
};

}  // namespace nfw
