#include "wave/FloatParameterSource.h"

FloatParameterSource::FloatParameterSource(wave::Environment& owner, float initial)
    : Source(owner, NoBlock{}), parameter(owner, initial) {
    ownBlock = &parameter.block;
}

FloatParameterSource::FloatParameterSource(wave::Environment& owner, float initial, float minimum, float maximum)
    : FloatParameterSource(owner, initial) {
    parameter.setRange(minimum, maximum);
}
