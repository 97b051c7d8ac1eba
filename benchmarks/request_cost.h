#pragma once

namespace zelvora::bench {

/// What a request through the whole adapter takes, awaited from a main loop, over what libcurl
/// alone takes for the same one with a handle that is kept: an interpret request of an application
/// with 100 tasks to a server on loopback that answers at once, over a connection that is warm.
double warmRequestVsLibcurl();

}  // namespace zelvora::bench
