// Makes the locks of the editor side.
// Threads: any but audio.
#pragma once

#include "base/CriticalSection.h"
#include "platform/LockOrder.h"

#include <memory>

std::unique_ptr<CriticalSection> createCriticalSection(LockRank rank = LockRank::unranked);

// Guards what all instances of the process share: the instance list and the shared objects. It is never destroyed.
CriticalSection& processSection();
