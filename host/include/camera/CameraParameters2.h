/*
 * Host stand-in of the camera client library's CameraParameters2 (Android 13): the API1
 * parameter set as the camera server keeps it, which remembers the order keys were first set in
 * (flatten() writes them in that order) so that settings that depend on each other can be
 * applied in the app's order.
 */
#ifndef ANDROID_HARDWARE_CAMERA_PARAMETERS2_H
#define ANDROID_HARDWARE_CAMERA_PARAMETERS2_H

#include <camera/CameraParameters.h>
#include <utils/Errors.h>
#include <utils/String16.h>
#include <utils/String8.h>
#include <utils/Vector.h>

#include <utility>
#include <vector>

namespace android {

class CameraParameters2 {
public:
    CameraParameters2();
    CameraParameters2(const String8& params) { unflatten(params); }
    ~CameraParameters2();

    String8 flatten() const;
    void unflatten(const String8& params);

    // A key or value holding '=' or ';' (or null) is refused. Setting an existing key keeps its
    // place in the order.
    void set(const char* key, const char* value);
    void set(const char* key, int value);
    void setFloat(const char* key, float value);
    // NULL when the key is missing.
    const char* get(const char* key) const;
    // -1 when the key is missing.
    int getInt(const char* key) const;
    float getFloat(const char* key) const;

    // Sets `order` below, at or above zero as key1 was set before, with, or after key2.
    // NAME_NOT_FOUND when either key is not set; BAD_VALUE for a null argument.
    status_t compareSetOrder(const char* key1, const char* key2, int* order) const;

    void remove(const char* key);

    void setPreviewSize(int width, int height);
    void getPreviewSize(int* width, int* height) const;
    void getSupportedPreviewSizes(Vector<Size>& sizes) const;

    void setVideoSize(int width, int height);
    void getVideoSize(int* width, int* height) const;
    void getSupportedVideoSizes(Vector<Size>& sizes) const;
    void getPreferredPreviewSizeForVideo(int* width, int* height) const;

    void setPreviewFrameRate(int fps);
    int getPreviewFrameRate() const;
    void getPreviewFpsRange(int* min_fps, int* max_fps) const;
    void setPreviewFpsRange(int min_fps, int max_fps);

    void setPreviewFormat(const char* format);
    const char* getPreviewFormat() const;

    void setPictureSize(int width, int height);
    void getPictureSize(int* width, int* height) const;
    void getSupportedPictureSizes(Vector<Size>& sizes) const;

    void setPictureFormat(const char* format);
    const char* getPictureFormat() const;

    void dump() const;
    status_t dump(int fd, const Vector<String16>& args) const;

private:
    // Index of `key` in mEntries, or -1.
    ssize_t indexOf(const char* key) const;

    // In the order keys were first set.
    std::vector<std::pair<String8, String8>> mEntries;
};

}  // namespace android

#endif
