// JSON paths for messages ("steps[3].expect.metadata[\"android.flash.mode\"]") and the file
// helpers the parser uses to resolve paths relative to a scenario file.
#pragma once

#include <stddef.h>

#include <string>
#include <vector>

namespace camext {
namespace sim {

// `base.key`, or `base["key"]` when the key is not a plain identifier.
std::string memberPath(const std::string& base, const std::string& key);
// `base[i]`.
std::string indexPath(const std::string& base, size_t index);

std::string parentDir(const std::string& file);
std::string baseName(const std::string& file);
// `path` as is when absolute, else relative to `dir`.
std::string resolvePath(const std::string& dir, const std::string& path);
bool fileReadable(const std::string& path);

}  // namespace sim
}  // namespace camext
