// Text helpers shared by the two API1 parameter sets: "WxH" and "min,max" pairs and size lists.
#ifndef HOST_SRC_CAMERA_PARAMETERTEXT_H
#define HOST_SRC_CAMERA_PARAMETERTEXT_H

#include <camera/CameraParameters.h>
#include <utils/String8.h>
#include <utils/Vector.h>

namespace android {
namespace parameter_text {

// Reads "<int><delim><int>" from `str`; 0 on success with `endptr` (if given) after the second
// number, -1 when the delimiter does not follow the first number (outputs untouched).
int parsePair(const char* str, int* first, int* second, char delim, const char** endptr = nullptr);

// Sets both outputs to -1, then to the pair read from `value` when it holds one. Null outputs
// are ignored.
void readPair(const char* value, int* first, int* second, char delim);

// Appends the sizes of a "WxH,WxH,..." list; stops at the first malformed entry.
void parseSizesList(const char* sizesStr, Vector<Size>& sizes);

// True when `text` holds neither '=' nor ';', which would break the flattened form.
bool isPlain(const char* text);

}  // namespace parameter_text
}  // namespace android

#endif
