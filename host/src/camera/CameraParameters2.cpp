// The API1 parameter set that remembers the order its keys were set in.
#define LOG_TAG "CameraParams2"

#include "camera/CameraParameters2.h"

#include <log/log.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "ParameterText.h"

namespace android {

using parameter_text::isPlain;
using parameter_text::parseSizesList;
using parameter_text::readPair;

CameraParameters2::CameraParameters2() {}

CameraParameters2::~CameraParameters2() {}

ssize_t CameraParameters2::indexOf(const char* key) const {
    if (key == nullptr) return -1;
    for (size_t i = 0; i < mEntries.size(); i++) {
        if (mEntries[i].first == key) return static_cast<ssize_t>(i);
    }
    return -1;
}

String8 CameraParameters2::flatten() const {
    String8 flattened("");
    for (size_t i = 0; i < mEntries.size(); i++) {
        if (i != 0) flattened += ";";
        flattened += mEntries[i].first;
        flattened += "=";
        flattened += mEntries[i].second;
    }
    return flattened;
}

void CameraParameters2::unflatten(const String8& params) {
    mEntries.clear();
    const char* a = params.string();
    for (;;) {
        const char* b = strchr(a, '=');
        if (b == nullptr) break;
        String8 key(a, static_cast<size_t>(b - a));
        a = b + 1;
        b = strchr(a, ';');
        String8 value = b == nullptr ? String8(a) : String8(a, static_cast<size_t>(b - a));
        ssize_t index = indexOf(key.string());
        if (index >= 0) {
            mEntries[index].second = value;
        } else {
            mEntries.emplace_back(key, value);
        }
        if (b == nullptr) break;
        a = b + 1;
    }
}

void CameraParameters2::set(const char* key, const char* value) {
    if (!isPlain(key)) {
        ALOGE("Key \"%s\" contains invalid character (= or ;)", key ? key : "(null)");
        return;
    }
    if (!isPlain(value)) {
        ALOGE("Value \"%s\" contains invalid character (= or ;)", value ? value : "(null)");
        return;
    }
    ssize_t index = indexOf(key);
    if (index >= 0) {
        mEntries[index].second = String8(value);
    } else {
        mEntries.emplace_back(String8(key), String8(value));
    }
}

void CameraParameters2::set(const char* key, int value) {
    char str[16];
    snprintf(str, sizeof(str), "%d", value);
    set(key, str);
}

void CameraParameters2::setFloat(const char* key, float value) {
    char str[32];
    snprintf(str, sizeof(str), "%g", value);
    set(key, str);
}

const char* CameraParameters2::get(const char* key) const {
    ssize_t index = indexOf(key);
    return index < 0 ? nullptr : mEntries[index].second.string();
}

int CameraParameters2::getInt(const char* key) const {
    const char* v = get(key);
    if (v == nullptr) return -1;
    return static_cast<int>(strtol(v, nullptr, 0));
}

float CameraParameters2::getFloat(const char* key) const {
    const char* v = get(key);
    if (v == nullptr) return -1;
    return strtof(v, nullptr);
}

status_t CameraParameters2::compareSetOrder(const char* key1, const char* key2, int* order) const {
    if (key1 == nullptr || key2 == nullptr || order == nullptr) return BAD_VALUE;
    ssize_t index1 = indexOf(key1);
    ssize_t index2 = indexOf(key2);
    if (index1 < 0 || index2 < 0) return NAME_NOT_FOUND;
    *order = index1 < index2 ? -1 : (index1 > index2 ? 1 : 0);
    return OK;
}

void CameraParameters2::remove(const char* key) {
    ssize_t index = indexOf(key);
    if (index >= 0) mEntries.erase(mEntries.begin() + index);
}

void CameraParameters2::setPreviewSize(int width, int height) {
    char str[32];
    snprintf(str, sizeof(str), "%dx%d", width, height);
    set(CameraParameters::KEY_PREVIEW_SIZE, str);
}

void CameraParameters2::getPreviewSize(int* width, int* height) const {
    readPair(get(CameraParameters::KEY_PREVIEW_SIZE), width, height, 'x');
}

void CameraParameters2::getSupportedPreviewSizes(Vector<Size>& sizes) const {
    parseSizesList(get(CameraParameters::KEY_SUPPORTED_PREVIEW_SIZES), sizes);
}

void CameraParameters2::setVideoSize(int width, int height) {
    char str[32];
    snprintf(str, sizeof(str), "%dx%d", width, height);
    set(CameraParameters::KEY_VIDEO_SIZE, str);
}

void CameraParameters2::getVideoSize(int* width, int* height) const {
    readPair(get(CameraParameters::KEY_VIDEO_SIZE), width, height, 'x');
}

void CameraParameters2::getSupportedVideoSizes(Vector<Size>& sizes) const {
    parseSizesList(get(CameraParameters::KEY_SUPPORTED_VIDEO_SIZES), sizes);
}

void CameraParameters2::getPreferredPreviewSizeForVideo(int* width, int* height) const {
    readPair(get(CameraParameters::KEY_PREFERRED_PREVIEW_SIZE_FOR_VIDEO), width, height, 'x');
}

void CameraParameters2::setPreviewFrameRate(int fps) {
    set(CameraParameters::KEY_PREVIEW_FRAME_RATE, fps);
}

int CameraParameters2::getPreviewFrameRate() const {
    return getInt(CameraParameters::KEY_PREVIEW_FRAME_RATE);
}

void CameraParameters2::getPreviewFpsRange(int* min_fps, int* max_fps) const {
    readPair(get(CameraParameters::KEY_PREVIEW_FPS_RANGE), min_fps, max_fps, ',');
}

void CameraParameters2::setPreviewFpsRange(int min_fps, int max_fps) {
    char str[32];
    snprintf(str, sizeof(str), "%d,%d", min_fps, max_fps);
    set(CameraParameters::KEY_PREVIEW_FPS_RANGE, str);
}

void CameraParameters2::setPreviewFormat(const char* format) {
    set(CameraParameters::KEY_PREVIEW_FORMAT, format);
}

const char* CameraParameters2::getPreviewFormat() const {
    return get(CameraParameters::KEY_PREVIEW_FORMAT);
}

void CameraParameters2::setPictureSize(int width, int height) {
    char str[32];
    snprintf(str, sizeof(str), "%dx%d", width, height);
    set(CameraParameters::KEY_PICTURE_SIZE, str);
}

void CameraParameters2::getPictureSize(int* width, int* height) const {
    readPair(get(CameraParameters::KEY_PICTURE_SIZE), width, height, 'x');
}

void CameraParameters2::getSupportedPictureSizes(Vector<Size>& sizes) const {
    parseSizesList(get(CameraParameters::KEY_SUPPORTED_PICTURE_SIZES), sizes);
}

void CameraParameters2::setPictureFormat(const char* format) {
    set(CameraParameters::KEY_PICTURE_FORMAT, format);
}

const char* CameraParameters2::getPictureFormat() const {
    return get(CameraParameters::KEY_PICTURE_FORMAT);
}

void CameraParameters2::dump() const {
    ALOGD("dump: mEntries.size = %zu", mEntries.size());
    for (const auto& entry : mEntries) {
        ALOGD("%s: %s\n", entry.first.string(), entry.second.string());
    }
}

status_t CameraParameters2::dump(int fd, const Vector<String16>& /*args*/) const {
    dprintf(fd, "CameraParameters2::dump: mEntries.size = %zu\n", mEntries.size());
    for (const auto& entry : mEntries) {
        dprintf(fd, "\t%s: %s\n", entry.first.string(), entry.second.string());
    }
    return NO_ERROR;
}

}  // namespace android
