/*
 * Plays one fuzzer input (format in TransactInput.h): a sequence of transactions and hook calls
 * on one extension object, each operation seeing the state the ones before it left. It checks
 * what must hold whatever the input: a transaction's status is one the transactions define,
 * codes outside the private range leave both parcels alone, gated codes write nothing when
 * refused, replies stay within their two words; and between operations no client slot points
 * at a closed client and the always-on state is one of its four values. A broken rule aborts,
 * which the fuzzer reports.
 *
 * The world the library sees is made once (configuration, properties, vendor tags, services,
 * the extension object) and put back after every input: caller identity, permissions, clients,
 * binders, properties, the extension's client state and the authorised-app manager's results.
 */
#pragma once

#include <stddef.h>
#include <stdint.h>

namespace transactfuzz {

// Builds the world; idempotent.
void initHarness();
void runOne(const uint8_t* data, size_t size);

}  // namespace transactfuzz
