/*
 * Plays one fuzzer input (format in TransactInput.h) against the extension's onTransact and
 * checks what must hold whatever the input: the status is one the transactions define, codes
 * outside the private range leave both parcels alone, gated codes write nothing when refused,
 * and replies stay within their two words. A broken rule aborts, which the fuzzer reports.
 *
 * The world the library sees is made once (configuration, properties, the extension object)
 * and put back after every input: caller identity, permissions, clients, binders, the
 * extension's client state and the authorised-app manager's results.
 */
#pragma once

#include <stddef.h>
#include <stdint.h>

#include <vector>

namespace transactfuzz {

// Builds the world; idempotent.
void initHarness();
void runOne(const uint8_t* data, size_t size);

// One well-formed call per code, and a few that must be refused.
std::vector<std::vector<uint8_t>> seedInputs();

}  // namespace transactfuzz
