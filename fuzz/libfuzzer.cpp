// Lets libFuzzer, which brings its own main, drive a target.

#include "fuzz/FuzzTarget.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerInitialize(int* /*argumentCount*/, char*** /*arguments*/)
{
    silenceLog();
    fuzzOne({}); // makes what a target makes once, which no input is to be blamed for
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    fuzzOne(QByteArrayView(bytes, static_cast<qsizetype>(size)));
    return 0;
}
