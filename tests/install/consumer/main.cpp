#include <ZelvoraSDK/base/text.h>

int main() { return zelvora::trimmed("  cart ") == "cart" ? 0 : 1; }
