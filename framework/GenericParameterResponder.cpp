#include "framework/GenericParameterResponder.h"

#include <utility>

GenericParameterResponder::~GenericParameterResponder() {
    while (!adopted.empty()) // a later helper may use an earlier one
        adopted.pop_back();
}

void GenericParameterResponder::adoptObject(std::unique_ptr<AdoptedObject> object) {
    if (object != nullptr)
        adopted.push_back(std::move(object));
}
