// Text helpers of the API1 parameter sets.
#define LOG_TAG "CameraParams"

#include "ParameterText.h"

#include <log/log.h>
#include <stdlib.h>
#include <string.h>

namespace android {
namespace parameter_text {

int parsePair(const char* str, int* first, int* second, char delim, const char** endptr) {
    if (str == nullptr) return -1;
    char* end = nullptr;
    int w = static_cast<int>(strtol(str, &end, 10));
    if (*end != delim) {
        ALOGE("Cannot find delimeter (%c) in str=%s", delim, str);
        return -1;
    }
    int h = static_cast<int>(strtol(end + 1, &end, 10));
    *first = w;
    *second = h;
    if (endptr != nullptr) *endptr = end;
    return 0;
}

void readPair(const char* value, int* first, int* second, char delim) {
    if (first == nullptr || second == nullptr) return;
    *first = *second = -1;
    if (value != nullptr) parsePair(value, first, second, delim);
}

void parseSizesList(const char* sizesStr, Vector<Size>& sizes) {
    if (sizesStr == nullptr) return;
    const char* sizeStart = sizesStr;
    while (true) {
        int width = 0;
        int height = 0;
        int success = parsePair(sizeStart, &width, &height, 'x', &sizeStart);
        if (success == -1 || (*sizeStart != ',' && *sizeStart != '\0')) {
            ALOGE("Picture sizes string \"%s\" contains invalid character.", sizesStr);
            return;
        }
        sizes.push(Size(width, height));
        if (*sizeStart == '\0') return;
        sizeStart++;
    }
}

bool isPlain(const char* text) {
    return text != nullptr && strchr(text, '=') == nullptr && strchr(text, ';') == nullptr;
}

}  // namespace parameter_text
}  // namespace android
