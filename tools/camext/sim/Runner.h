// Plays scenario files, each in a child process of its own, so that every scenario starts from
// a fresh platform state and a crash of the library ends only that file.
#pragma once

#include <stdio.h>

#include <string>
#include <vector>

namespace camext {
namespace sim {

struct RunOptions {
    bool json = false;
    std::string libPath;     // the extension library to load
    std::string deviceRoot;  // set per scenario: the temporary folder that stands for "/"
    std::string tracePath;   // --trace: where the session's timeline is written, or empty
};

// Exit status of the run: 0 every expectation held, 1 one failed (or a scenario crashed),
// 2 a file was malformed or could not be played.
int runFiles(const std::vector<std::string>& files, const RunOptions& options, FILE* out);

}  // namespace sim
}  // namespace camext
