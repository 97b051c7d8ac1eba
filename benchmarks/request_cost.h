#pragma once

namespace zelvora::bench {

/// The time of a request through the whole adapter, awaited from a main loop, over that of libcurl
/// alone with a handle that is kept. It is an interpret request of an application with 100 tasks to
/// a server on loopback that answers at once, over a warm connection.
double warmRequestVsLibcurl();

}  // namespace zelvora::bench
