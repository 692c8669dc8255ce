#include "platform/BinaryFiles.h"

#include "platform/Resources.h"

BinaryResourceReader::BinaryResourceReader(std::string_view name) : BinaryFileReader(openResource(name)) {}
