#include "sim/ScenarioPaths.h"

#include <ctype.h>
#include <unistd.h>

namespace camext {
namespace sim {

std::string memberPath(const std::string& base, const std::string& key) {
    bool plain = !key.empty() && (isalpha(static_cast<unsigned char>(key[0])) || key[0] == '_');
    for (char c : key) plain = plain && (isalnum(static_cast<unsigned char>(c)) || c == '_');
    if (!plain) {
        std::string q = "[\"";
        for (char c : key) q += (c == '"' || c == '\\') ? std::string("\\") + c : std::string(1, c);
        return base + q + "\"]";
    }
    return base.empty() ? key : base + "." + key;
}

std::string indexPath(const std::string& base, size_t index) {
    return base + "[" + std::to_string(index) + "]";
}

std::string parentDir(const std::string& file) {
    size_t slash = file.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : file.substr(0, slash);
}

std::string baseName(const std::string& file) {
    size_t slash = file.rfind('/');
    return slash == std::string::npos ? file : file.substr(slash + 1);
}

std::string resolvePath(const std::string& dir, const std::string& path) {
    if (!path.empty() && path[0] == '/') return path;
    return dir + "/" + path;
}

bool fileReadable(const std::string& path) {
    return access(path.c_str(), R_OK) == 0;
}

}  // namespace sim
}  // namespace camext
