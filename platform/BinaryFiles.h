// Binary readers and writers that own their stream.
// Threads: the one that made them.
#pragma once

#include "base/BinaryDataReader.h"
#include "base/BinaryDataWriter.h"

#include <iostream>
#include <memory>
#include <string_view>
#include <utility>

class BinaryFileReader : public BinaryDataReader {
public:
    explicit BinaryFileReader(std::unique_ptr<std::istream> file) // may be null
        : BinaryDataReader(file.get()), owned(std::move(file)) {}

private:
    std::unique_ptr<std::istream> owned;
};

class BinaryFileWriter : public BinaryDataWriter {
public:
    explicit BinaryFileWriter(std::unique_ptr<std::ostream> file) // may be null
        : BinaryDataWriter(file.get()), owned(std::move(file)) {}

private:
    std::unique_ptr<std::ostream> owned;
};

class BinaryResourceReader : public BinaryFileReader {
public:
    explicit BinaryResourceReader(std::string_view name); // throws EResource
};
