// In-process system property store behind <cutils/properties.h>.
#include "hostctl/Properties.h"

#include <cutils/properties.h>
#include <errno.h>
#include <inttypes.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <atomic>
#include <fstream>
#include <limits>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace {

struct Store {
    std::mutex lock;
    std::map<std::string, std::string, std::less<>> values;
    // Names the writer may not set (prefixes) and the writes refused for them.
    std::vector<std::string> refusedPrefixes;
    std::vector<std::string> refusedWrites;
};

Store& store() {
    static Store* s = new Store();
    return *s;
}

// Copies `text` into a value buffer, cut to PROPERTY_VALUE_MAX - 1 bytes (a plain copy: the
// library reads properties on its per-query and per-request paths); the length copied.
size_t copyValue(char* out, const char* text, size_t length) {
    if (length > PROPERTY_VALUE_MAX - 1) length = PROPERTY_VALUE_MAX - 1;
    memcpy(out, text, length);
    out[length] = '\0';
    return length;
}

// Under the store's lock.
bool writeRefused(const char* key) {
    for (const std::string& prefix : store().refusedPrefixes) {
        if (strncmp(key, prefix.c_str(), prefix.size()) == 0) return true;
    }
    return false;
}

// Counts the changes of the store, under its lock; a thread's remembered reads hold while it
// stays the same.
std::atomic<uint64_t> gGeneration{1};

// Under the store's lock, after every change of a value.
void changedLocked() {
    gGeneration.fetch_add(1, std::memory_order_release);
}

// The last reads of one thread: the library reads the same few properties on every request,
// which then cost neither the store's lock nor its search (Android's readers take no lock).
constexpr size_t kRememberedReads = 8;
constexpr size_t kRememberedKeyMax = 64;
struct RememberedRead {
    uint64_t generation = 0;  // 0: nothing remembered
    size_t keyLength = 0;
    char key[kRememberedKeyMax];
    int length = -1;  // -1: the property was not set
    char value[PROPERTY_VALUE_MAX];
};
thread_local RememberedRead tReads[kRememberedReads];
thread_local size_t tNextRead = 0;

// Copies the stored value of `key` (cut to PROPERTY_VALUE_MAX - 1 bytes); its length, or -1
// when missing.
int lookup(const char* key, char* out) {
    const size_t keyLength = strlen(key);
    const bool remember = keyLength < kRememberedKeyMax;
    if (remember) {
        const uint64_t generation = gGeneration.load(std::memory_order_acquire);
        for (const RememberedRead& read : tReads) {
            if (read.generation != generation || read.keyLength != keyLength ||
                memcmp(read.key, key, keyLength) != 0) {
                continue;
            }
            if (read.length >= 0) memcpy(out, read.value, static_cast<size_t>(read.length) + 1);
            return read.length;
        }
    }
    int length = -1;
    uint64_t generation = 0;
    {
        std::lock_guard<std::mutex> g(store().lock);
        generation = gGeneration.load(std::memory_order_relaxed);
        auto it = store().values.find(std::string_view(key, keyLength));
        if (it != store().values.end()) {
            const char* text = it->second.c_str();
            length = static_cast<int>(copyValue(out, text, strnlen(text, PROPERTY_VALUE_MAX - 1)));
        }
    }
    if (remember) {
        RememberedRead& read = tReads[tNextRead++ % kRememberedReads];
        read.generation = generation;
        read.keyLength = keyLength;
        memcpy(read.key, key, keyLength);
        read.length = length;
        if (length >= 0) memcpy(read.value, out, static_cast<size_t>(length) + 1);
    }
    return length;
}

template <typename T>
T getInt(const char* key, T defaultValue) {
    if (key == nullptr) return defaultValue;
    char buf[PROPERTY_VALUE_MAX] = {};
    if (property_get(key, buf, "") < 1) return defaultValue;
    int savedErrno = errno;
    errno = 0;
    char* end = nullptr;
    intmax_t v = strtoimax(buf, &end, 0);
    T result = defaultValue;
    if (errno != ERANGE && end != buf && *end == '\0' && v >= std::numeric_limits<T>::min() &&
        v <= std::numeric_limits<T>::max()) {
        result = static_cast<T>(v);
    }
    errno = savedErrno;
    return result;
}

std::string trim(const std::string& s) {
    size_t b = s.find_first_not_of(" \t\r");
    if (b == std::string::npos) return "";
    size_t e = s.find_last_not_of(" \t\r");
    return s.substr(b, e - b + 1);
}

}  // namespace

extern "C" {

int property_get(const char* key, char* value, const char* default_value) {
    if (value == nullptr) return -1;
    value[0] = '\0';
    int len = key != nullptr ? lookup(key, value) : -1;
    if (len < 1) {
        len = 0;
        if (default_value != nullptr) {
            len = static_cast<int>(
                copyValue(value, default_value, strnlen(default_value, PROPERTY_VALUE_MAX - 1)));
        }
    }
    return len;
}

int8_t property_get_bool(const char* key, int8_t default_value) {
    if (key == nullptr) return default_value;
    char buf[PROPERTY_VALUE_MAX] = {};
    int len = property_get(key, buf, "");
    if (len == 1) {
        if (buf[0] == '0' || buf[0] == 'n') return 0;
        if (buf[0] == '1' || buf[0] == 'y') return 1;
    } else if (len > 1) {
        if (!strcmp(buf, "no") || !strcmp(buf, "false") || !strcmp(buf, "off")) return 0;
        if (!strcmp(buf, "yes") || !strcmp(buf, "true") || !strcmp(buf, "on")) return 1;
    }
    return default_value;
}

int64_t property_get_int64(const char* key, int64_t default_value) {
    return getInt<int64_t>(key, default_value);
}

int32_t property_get_int32(const char* key, int32_t default_value) {
    return getInt<int32_t>(key, default_value);
}

int property_set(const char* key, const char* value) {
    if (key == nullptr || key[0] == '\0') return -1;
    if (value == nullptr) value = "";
    if (strlen(value) >= PROPERTY_VALUE_MAX) return -1;
    std::lock_guard<std::mutex> g(store().lock);
    if (writeRefused(key)) {
        store().refusedWrites.push_back(key);
        return -1;
    }
    auto it = store().values.find(key);
    if (it != store().values.end() && strncmp(key, "ro.", 3) == 0) return -1;
    store().values[key] = value;
    changedLocked();
    return 0;
}

int property_list(void (*propfn)(const char* key, const char* value, void* cookie), void* cookie) {
    if (propfn == nullptr) return -1;
    for (const auto& [k, v] : hostctl::properties()) propfn(k.c_str(), v.c_str(), cookie);
    return 0;
}

}  // extern "C"

namespace hostctl {

void setProperty(const std::string& name, const std::string& value) {
    std::lock_guard<std::mutex> g(store().lock);
    store().values[name] = value;
    changedLocked();
}

void removeProperty(const std::string& name) {
    std::lock_guard<std::mutex> g(store().lock);
    auto it = store().values.find(name);
    if (it != store().values.end()) store().values.erase(it);
    changedLocked();
}

void clearProperties() {
    std::lock_guard<std::mutex> g(store().lock);
    store().values.clear();
    changedLocked();
}

std::map<std::string, std::string> properties() {
    std::lock_guard<std::mutex> g(store().lock);
    return std::map<std::string, std::string>(store().values.begin(), store().values.end());
}

void refusePropertyWrites(const std::vector<std::string>& prefixes) {
    std::lock_guard<std::mutex> g(store().lock);
    store().refusedPrefixes = prefixes;
    store().refusedWrites.clear();
}

std::vector<std::string> refusedPropertyWrites() {
    std::lock_guard<std::mutex> g(store().lock);
    return store().refusedWrites;
}

bool loadPropertyFile(const std::string& path, std::string* error) {
    std::ifstream in(path);
    if (!in) {
        if (error) *error = path + ": cannot open";
        return false;
    }
    std::string line;
    int lineNo = 0;
    while (std::getline(in, line)) {
        ++lineNo;
        std::string t = trim(line);
        if (t.empty() || t[0] == '#') continue;
        size_t eq = t.find('=');
        if (eq == std::string::npos || trim(t.substr(0, eq)).empty()) {
            if (error) *error = path + ":" + std::to_string(lineNo) + ": expected name=value";
            return false;
        }
        setProperty(trim(t.substr(0, eq)), trim(t.substr(eq + 1)));
    }
    return true;
}

}  // namespace hostctl
