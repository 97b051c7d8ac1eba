#pragma once

#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/awaitable.hpp>

namespace zelvora {

namespace asio = boost::asio;

}  // namespace zelvora
