#pragma once

// The ready-made platform of this system, and a main loop for programs that have none.
#include <ZelvoraSDK/adapters/host/host_platform.h>
#include <ZelvoraSDK/async/executors.h>
