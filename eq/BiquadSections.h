// What running sections are asked for: to change their form in the middle of a sound, and what they sound like.
// Threads: any.
#pragma once

#include "eq/ResponseProduct.h"
#include "eq/SectionCoefficients.h"

#include <complex>
#include <cstddef>
#include <span>

// Turns a section's memory into that of the other form, so that the output goes on without a step. `row` is that of the
// section in its old form.
void convertSectionMemory(SectionForm oldForm, const double* row, double* memory) noexcept REALTIME;

// The row itself, in place, from the other form.
void convertSectionRow(SectionForm newForm, double* row) noexcept REALTIME;

// Of direct rows, one behind the other, at w radians per sample. A section with a pole just there is left out.
std::complex<double> cascadeResponse(const double* rows, std::size_t sectionCount, double w) noexcept REALTIME;

// The same at as many frequencies as the product has, into the product.
void multiplyCascade(ResponseProduct& product, const double* rows, std::size_t sectionCount,
                     std::span<const double> frequencies) noexcept REALTIME;
