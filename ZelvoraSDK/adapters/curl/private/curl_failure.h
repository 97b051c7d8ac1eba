#pragma once

#include <curl/curl.h>

#include <ZelvoraSDK/base/error.h>

namespace zelvora {

/// The Error for libcurl's `code`. `detail` is what libcurl wrote about this transfer, or "".
Error curlFailure(CURLcode code, const char* detail);

Error responseTooLarge();
Error transferCancelled();
Error sessionClosed();

}  // namespace zelvora
