// libFuzzer entry of the transaction fuzzer; the input format is in TransactInput.h and the
// checks in TransactHarness.cpp.
#include <stddef.h>
#include <stdint.h>

#include "TransactHarness.h"

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    transactfuzz::initHarness();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    transactfuzz::runOne(data, size);
    return 0;
}
