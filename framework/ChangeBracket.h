// A batch of changes, as long as the object lives.
// Threads: any; audio only where the owner's own beginChange and endChange may run there.
#pragma once

#include "framework/GenericParameterOwner.h"

class ChangeBracket {
public:
    explicit ChangeBracket(GenericParameterOwner& changed) noexcept : owner(changed) { owner.beginChange(); }
    ~ChangeBracket() { owner.endChange(); }
    ChangeBracket(const ChangeBracket&) = delete;
    ChangeBracket& operator=(const ChangeBracket&) = delete;

private:
    GenericParameterOwner& owner;
};
