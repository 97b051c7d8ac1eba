// zelvora-sherpa-check FOLDER: whether the model in FOLDER can be loaded and decodes a second of
// silence. A process of its own, because the library ends the one that loads a bad model.

#include <cstdio>
#include <exception>

#include <ZelvoraSDK/adapters/sherpa/private/transducer.h>

int main(int count, char** arguments) {
  if (count != 2) return 2;
  try {
    return zelvora::sherpa::decodesSilence(zelvora::sherpa::modelFilesIn(arguments[1])) ? 0 : 1;
  } catch (const std::exception& refused) {
    std::fprintf(stderr, "%s\n", refused.what());
    return 1;
  }
}
