// Frequency responses as a picture: magnitude in dB above, phase in degrees below, over a logarithmic frequency axis.
// Threads: any.
#pragma once

#include "tools/host/ResponseMeasurement.h"

#include <span>
#include <string>

// The bytes of a PNG file. All responses are of one sample rate.
std::string responsePicture(std::span<const Response> responses, const std::string& title, const std::string& subtitle);
