// Which extensions an instance offers.
// Threads: any.
#pragma once

const void* clapExtensionTable(const char* id) noexcept; // null: not offered
