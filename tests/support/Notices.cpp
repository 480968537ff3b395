#include "Notices.h"

#include <utility>

#include "utl/ThreadManager.h"

namespace {

thread_local std::vector<nfwtest::Notice>* gpNotices = nullptr;

}  // namespace

void utl::ThreadManager::keepAliveWatchdog(const StatementInfo& n) {
  if (gpNotices != nullptr) gpNotices->push_back({n.getFile(), n.getFunction(), n.getLine(), n.getPhase()});
}

namespace nfwtest {

Notices::Notices() { gpNotices = new std::vector<Notice>; }
Notices::~Notices() { delete std::exchange(gpNotices, nullptr); }
std::vector<Notice> Notices::take() { return std::exchange(*gpNotices, {}); }

}  // namespace nfwtest
