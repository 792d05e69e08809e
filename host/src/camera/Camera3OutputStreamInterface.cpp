// StreamSet: the id-to-stream table of a device's output streams.
#define LOG_TAG "Camera3-OutputStreamInterface"

#include "device3/Camera3OutputStreamInterface.h"

#include <log/log.h>

namespace android {

namespace camera3 {

status_t StreamSet::add(int streamId, sp<camera3::Camera3OutputStreamInterface> stream) {
    if (stream == nullptr) {
        ALOGE("%s: Stream %d: cannot add a null stream", __FUNCTION__, streamId);
        return BAD_VALUE;
    }
    std::lock_guard<std::mutex> lock(mLock);
    return mData.add(streamId, stream);
}

ssize_t StreamSet::remove(int streamId) {
    std::lock_guard<std::mutex> lock(mLock);
    return mData.removeItem(streamId);
}

sp<camera3::Camera3OutputStreamInterface> StreamSet::get(int streamId) {
    std::lock_guard<std::mutex> lock(mLock);
    ssize_t index = mData.indexOfKey(streamId);
    if (index == NAME_NOT_FOUND) {
        return nullptr;
    }
    return mData.valueAt(index);
}

sp<camera3::Camera3OutputStreamInterface> StreamSet::operator[](size_t index) {
    std::lock_guard<std::mutex> lock(mLock);
    if (index >= mData.size()) {
        ALOGE("%s: index %zu out of range (%zu streams)", __FUNCTION__, index, mData.size());
        return nullptr;
    }
    return mData.valueAt(index);
}

size_t StreamSet::size() const {
    std::lock_guard<std::mutex> lock(mLock);
    return mData.size();
}

std::vector<int> StreamSet::getStreamIds() {
    std::lock_guard<std::mutex> lock(mLock);
    std::vector<int> streamIds(mData.size());
    for (size_t i = 0; i < mData.size(); i++) {
        streamIds[i] = mData.keyAt(i);
    }
    return streamIds;
}

void StreamSet::clear() {
    std::lock_guard<std::mutex> lock(mLock);
    mData.clear();
}

StreamSet::StreamSet(const StreamSet& other) {
    std::lock_guard<std::mutex> lock(other.mLock);
    mData = other.mData;
}

}  // namespace camera3

}  // namespace android
