// Makes the queues that carry events to the main thread.
// Threads: main.
#pragma once

#include "base/AsyncEventQueue.h"

#include <memory>

// Here the queue needs a carrier: the host's callback on the main thread.
std::unique_ptr<AsyncEventQueue> createAsyncEventQueue();
