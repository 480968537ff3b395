// Notes which basic blocks a test runs, for scripts/mutants; linked into every library and program of its build.
//
// Each module has its own hidden copy of this. Its blocks are the bytes of a file NFW_COVER/MODULE.hit, mapped and
// shared, so that children are counted in and a killed process loses nothing. Where the blocks are in the module goes
// to NFW_COVER/MODULE.pcs once: addresses as in the file, 8 bytes each, in the order of the bytes. MODULE is the file's
// folder and name, for two libraries go by one name: "seams,libNfwPlatform.so.1".
#include <dlfcn.h>
#include <fcntl.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <unistd.h>

namespace {

uint8_t* gHits = nullptr;
uint32_t gBlocks = 0;

int openBeside(const char* nModule, const char* nSuffix, int nFlags) {
  const char* const name = strrchr(nModule, '/') != nullptr ? strrchr(nModule, '/') : nModule;
  const char* folder = name;
  while (folder > nModule && folder[-1] != '/') --folder;
  char path[4096];
  snprintf(path, sizeof(path), "%s/%.*s,%s%s", getenv("NFW_COVER"), static_cast<int>(name - folder), folder,
           name + (*name == '/'), nSuffix);
  return open(path, nFlags | O_CLOEXEC, 0666);
}

const char* moduleOf(const void* nAddress, uintptr_t* nBase) {
  Dl_info info;
  if (dladdr(nAddress, &info) == 0) return nullptr;
  *nBase = reinterpret_cast<uintptr_t>(info.dli_fbase);
  // The program itself is known by the name it was called by: the link tells the file.
  static char own[4096];
  if (strstr(info.dli_fname, ".so") != nullptr) return info.dli_fname;
  const ssize_t size = readlink("/proc/self/exe", own, sizeof(own) - 1);
  return size > 0 ? own : nullptr;
}

}  // namespace

#define HIDDEN extern "C" __attribute__((visibility("hidden")))

// NOLINTBEGIN(bugprone-reserved-identifier): the names are the compiler's
HIDDEN void __sanitizer_cov_trace_pc_guard_init(uint32_t* nStart, uint32_t* nStop) {
  uintptr_t base = 0;
  if (getenv("NFW_COVER") == nullptr || nStart == nStop || *nStart != 0) return;
  const char* const module = moduleOf(nStart, &base);
  const int fd = module != nullptr ? openBeside(module, ".hit", O_RDWR | O_CREAT) : -1;
  if (fd < 0) return;
  const size_t size = static_cast<size_t>(nStop - nStart) + 1;
  if (ftruncate(fd, static_cast<off_t>(size)) == 0) {
    void* const map = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    if (map != MAP_FAILED) gHits = static_cast<uint8_t*>(map);
  }
  close(fd);
  if (gHits == nullptr) return;
  for (uint32_t* guard = nStart; guard < nStop; ++guard) *guard = ++gBlocks;
}

HIDDEN void __sanitizer_cov_pcs_init(const uintptr_t* nStart, const uintptr_t* nStop) {
  uintptr_t base = 0;
  if (getenv("NFW_COVER") == nullptr || gHits == nullptr) return;
  const char* const module = moduleOf(nStart, &base);
  const int fd = module != nullptr ? openBeside(module, ".pcs", O_WRONLY | O_CREAT | O_EXCL) : -1;
  FILE* const file = fd >= 0 ? fdopen(fd, "wb") : nullptr;
  if (file == nullptr) return;
  for (const uintptr_t* pc = nStart; pc < nStop; pc += 2) {  // each address stands beside flags
    const uint64_t address = *pc - base;
    fwrite(&address, sizeof(address), 1, file);
  }
  fclose(file);
}

HIDDEN void __sanitizer_cov_trace_pc_guard(const uint32_t* nGuard) {
  if (*nGuard != 0) gHits[*nGuard] = 1;
}
// NOLINTEND(bugprone-reserved-identifier)
