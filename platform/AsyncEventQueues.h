// Makes the queues that carry events to the main thread.
// Threads: main.
#pragma once

#include "base/AsyncEventQueue.h"

#include <memory>

// The queue needs a carrier, such as the host's callback on the main thread, where no message loop empties it.
std::unique_ptr<AsyncEventQueue> createAsyncEventQueue();
