#pragma once

#include <string>
#include <string_view>

#include <ZelvoraSDK/base/error.h>

namespace zelvora {

// libplist trusts its input too much: it follows every reference in a binary list, so that a few
// hundred bytes may unfold into more than any memory holds, and it descends as deep as a list goes.
// These checks run first and let only lists within bounds through.

/// Throws Error unless each object of a binary list lies within it, references keep to
/// `kMaxPropertyListDepth`, and all that they unfold to stays small.
void checkBinaryShape(std::string_view bytes);

/// Throws Error unless the tags of an XML list pair up within `kMaxPropertyListDepth`.
void checkXmlShape(std::string_view bytes);

/// What all failures to read a property list look like.
inline Error propertyListError(const std::string& description) {
  return {"PropertyList", 1, description};
}

}  // namespace zelvora
