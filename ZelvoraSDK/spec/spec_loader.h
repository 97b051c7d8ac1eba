#pragma once

#include <string>

#include <ZelvoraSDK/platform/system.h>
#include <ZelvoraSDK/spec/any_encodable.h>
#include <ZelvoraSDK/spec/runtime_spec.h>

namespace zelvora {

/// Loads specs that lie in an application's bundle. Never an object. Validates nothing.
struct ZelvoraSpecLoader {
  ZelvoraSpecLoader() = delete;

  /// Decodes the resource `resource`.json. Throws Error: code 404 in the domain "ZelvoraSpecLoader"
  /// when the bundle has no such resource, else what reading or decoding it threw.
  static RuntimeSpec loadFromBundle(const std::string& resource, const AppBundle& bundle);
};

/// The full spec in the resource `name`.json of the application's own bundle, kept as its document.
/// A missing, unreadable, empty, ill-formed or incomplete spec is a fatal error.
AnyEncodable requireSpecResource(const std::string& name, const AppBundle& mainBundle);

}  // namespace zelvora
