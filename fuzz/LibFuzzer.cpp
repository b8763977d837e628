// The door that libFuzzer comes in by.
#include <cstddef>
#include <cstdint>

#include "fuzz/Target.h"

extern "C" int LLVMFuzzerInitialize(int *count, char ***arguments);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

int LLVMFuzzerInitialize(int *, char ***)
{
    fuzz::run({}); // what a target makes only once is not to count for the first input's time
    return 0;
}

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    fuzz::run(std::as_bytes(std::span(data, size)));
    return 0;
}
