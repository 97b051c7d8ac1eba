#include "common_options.h"

#include <CLI/CLI.hpp>

namespace zelvora::tool {

void addCommonOptions(CLI::App& command, CommonOptions& options) {
  command.add_option("--spec", options.spec, "App spec, a JSON file, full or minimal")
      ->type_name("FILE");
  command.add_option("--bundle", options.bundle, "Application bundle: a folder with Info.plist")
      ->type_name("DIR");
  command.add_option("--resource", options.resource, "The spec resource in the bundle")
      ->type_name("NAME")
      ->needs("--bundle")
      ->excludes("--spec");
  command.add_option("--locale", options.locale, "Locale identifier [the bundle's, else en-US]")
      ->type_name("L");
  command.add_option("--key", options.key, "Publishable key [the bundle's, else demo]")
      ->type_name("K");
  command.add_option("--base-url", options.baseURL, "Backend origin")->type_name("URL");
  command.add_option("--bundle-id", options.bundleId, "Bundle identifier")->type_name("ID");
  command.add_option("--access-token", options.accessToken, "Backend access token")
      ->type_name("T")
      ->envname("ZELVORA_ACCESS_TOKEN");
  command.add_flag("--offline", options.offline, "No network: every request fails at once");
  command.add_option("--data-dir", options.dataDir, "Where learning counts live")->type_name("DIR");
  command.add_flag("--json", options.json, "One JSON object a line");
  command.add_flag("--verbose", options.verbose, "Show what each stage was asked and answered");
}

}  // namespace zelvora::tool
