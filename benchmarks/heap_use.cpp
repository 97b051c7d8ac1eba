#include <benchmarks/heap_use.h>

#include <malloc.h>

#include <cstdlib>
#include <new>

namespace {

thread_local constinit zelvora::bench::HeapUse use;

}  // namespace

namespace zelvora::bench {

HeapUse heapUse() { return use; }

}  // namespace zelvora::bench

// The forms for arrays, and those with a size, come down to these.

void* operator new(std::size_t size) {
  void* const block = std::malloc(size);
  if (block == nullptr) throw std::bad_alloc();
  ++use.allocations;
  use.liveBytes += malloc_usable_size(block);
  return block;
}

void operator delete(void* block) noexcept {
  use.liveBytes -= malloc_usable_size(block);
  std::free(block);
}

void operator delete(void* block, std::size_t) noexcept { operator delete(block); }
