// A program on which each kind of hardening leaves its mark: a large frame, an array on the stack,
// and a copy whose length the compiler can't know.

#include <cstdio>
#include <cstring>

int main(int argc, char** argv) {
  char large[200'000];
  char small[16];
  large[argc] = 1;
  std::strcpy(small, argv[0] + std::strlen(argv[0]));
  return std::printf("%s%d\n", small, large[argc * 3]) > 0 ? 0 : 1;
}
