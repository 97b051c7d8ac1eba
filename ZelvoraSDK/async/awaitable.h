#pragma once

#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/awaitable.hpp>

#include <ZelvoraSDK/async/awaitable_fwd.h>
