// An owner of parameters that also keeps their helpers alive.
// Threads: main.
#pragma once

#include "framework/GenericParameterOwner.h"

#include <memory>
#include <vector>

class GenericParameterResponder : public GenericParameterOwner {
public:
    GenericParameterResponder() = default;
    GenericParameterResponder(const GenericParameterResponder&) = delete;
    GenericParameterResponder& operator=(const GenericParameterResponder&) = delete;
    virtual ~GenericParameterResponder();

    void adoptObject(std::unique_ptr<AdoptedObject> object) override;

private:
    std::vector<std::unique_ptr<AdoptedObject>> adopted;
};
