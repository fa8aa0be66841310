#include "kovabase/platform/Memory.h"

#include <cstdint>
#include <sys/mman.h>

namespace kova::platform {

void* mapPages(std::size_t bytes, std::size_t alignment) noexcept {
  // The system aligns to pages only: ask for more and give back both ends.
  void* const mapped =
      mmap(nullptr, bytes + alignment, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (mapped == MAP_FAILED) return nullptr;
  char* const begin = static_cast<char*>(mapped);
  const std::size_t misaligned = reinterpret_cast<std::uintptr_t>(begin) & (alignment - 1);
  const std::size_t before = misaligned != 0 ? alignment - misaligned : 0;
  char* const pages = begin + before;
  if (before != 0) munmap(begin, before);
  if (alignment != before) munmap(pages + bytes, alignment - before);
  return pages;
}

void unmapPages(void* pages, std::size_t bytes) noexcept { munmap(pages, bytes); }

void offerPages(void* pages, std::size_t bytes) noexcept { madvise(pages, bytes, MADV_FREE); }

}  // namespace kova::platform
