// The block "CuSV": texts under names, in the order of the names.
// Threads: any.
#pragma once

#include <map>
#include <string>

class BinaryDataReader;
class BinaryDataWriter;

using CustomValues = std::map<std::string, std::string>;

void writeCustomValues(BinaryDataWriter& writer, const CustomValues& values);

// False: another block, a negative count, or the bytes end early; values are then left alone.
[[nodiscard]] bool readCustomValues(BinaryDataReader& reader, CustomValues& values);
