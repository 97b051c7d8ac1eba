#pragma once

// The ready-made platform, in one include.
#include <ZelvoraSDK/adapters/host/host_platform.h>
