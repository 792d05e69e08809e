/*
 * What the parser fuzz targets share: a quiet platform log with the information lines on (so
 * their formats meet every value an input carries), one temporary device root for the process,
 * files written into it, and names picked out of an input so that lookups hit what the input
 * defines. The library's weak LLVMFuzzerInitialize sets up the first two; a target that needs
 * more defines its own.
 */
#pragma once

#include <stddef.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>

#include <string>
#include <vector>

// Reports a broken rule of the surface, which the fuzzer reports as a crash.
#define FUZZ_CHECK(cond)                                                                  \
    do {                                                                                  \
        if (!(cond)) {                                                                    \
            fprintf(stderr, "%s:%d: fuzz check failed: %s\n", __FILE__, __LINE__, #cond); \
            abort();                                                                      \
        }                                                                                 \
    } while (0)

namespace fuzzworld {

// Discards every log line (they are still formatted) and turns the information lines on.
void quietLogs();

// Makes the process's temporary device root (removed at exit) on the first call.
void useDeviceRoot();
// `devicePath` ("/data/x" or "odm/etc/x") under the device root, as a host path.
std::string hostPath(const char* devicePath);
// Writes the bytes at `devicePath`, creating folders; the file is replaced.
void writeDeviceFile(const char* devicePath, const void* data, size_t size);
void removeDeviceFile(const char* devicePath);

// The raw text (escapes kept) of the first `max` double-quoted strings of `text`, each at most
// `maxLength` bytes and free of NUL bytes; an input's section, key and package names.
std::vector<std::string> quotedStrings(const std::string& text, size_t max, size_t maxLength = 96);

// A stream that swallows what the command-line checkers print.
FILE* nullStream();

}  // namespace fuzzworld
