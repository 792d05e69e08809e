// Stream buffers backed by AHardwareBuffers.
#include <vndk/hardware_buffer.h>

#include <mutex>
#include <vector>

#include "hostctl/HostHardwareBuffers.h"

namespace hostctl {

namespace {

class HardwareBufferAllocator : public HostBufferAllocator {
public:
    explicit HardwareBufferAllocator(bool locksFail) : mLocksFail(locksFail) {}

    bool allocate(const android::camera3::camera_stream& stream, size_t size,
                  HostBuffer* out) override {
        AHardwareBuffer_Desc desc{};
        desc.width = stream.width;
        desc.height = stream.height;
        desc.layers = 1;
        desc.format = static_cast<uint32_t>(stream.format);
        desc.usage = AHARDWAREBUFFER_USAGE_CPU_READ_OFTEN | AHARDWAREBUFFER_USAGE_CPU_WRITE_OFTEN;
        AHardwareBuffer* buffer = nullptr;
        if (AHardwareBuffer_allocate(&desc, &buffer) != 0 || hardwareBufferBytes(buffer) < size) {
            AHardwareBuffer_release(buffer);
            buffer = nullptr;
            if (size > UINT32_MAX) return false;
            desc.width = static_cast<uint32_t>(size);
            desc.height = 1;
            desc.format = AHARDWAREBUFFER_FORMAT_BLOB;
            if (AHardwareBuffer_allocate(&desc, &buffer) != 0) return false;
        }
        // The host maps buffers at a fixed address: note it once for the stream's records.
        void* data = nullptr;
        if (AHardwareBuffer_lock(buffer, AHARDWAREBUFFER_USAGE_CPU_READ_OFTEN, -1, nullptr,
                                 &data) != 0) {
            AHardwareBuffer_release(buffer);
            return false;
        }
        AHardwareBuffer_unlock(buffer, nullptr);
        setHardwareBufferLockFails(buffer, mLocksFail);
        out->handle = AHardwareBuffer_getNativeHandle(buffer);
        out->data = data;
        out->size = size;
        std::lock_guard<std::mutex> lock(mLock);
        mBuffers.push_back(buffer);
        return true;
    }

    void release(HostBuffer& buffer) override {
        std::lock_guard<std::mutex> lock(mLock);
        for (size_t i = 0; i < mBuffers.size(); ++i) {
            if (AHardwareBuffer_getNativeHandle(mBuffers[i]) == buffer.handle) {
                AHardwareBuffer_release(mBuffers[i]);
                mBuffers.erase(mBuffers.begin() + static_cast<std::ptrdiff_t>(i));
                break;
            }
        }
        buffer = HostBuffer();
    }

private:
    const bool mLocksFail;
    std::mutex mLock;
    // Buffers made and not yet released.
    std::vector<AHardwareBuffer*> mBuffers;
};

}  // namespace

std::shared_ptr<HostBufferAllocator> hardwareBufferAllocator(bool locksFail) {
    return std::make_shared<HardwareBufferAllocator>(locksFail);
}

}  // namespace hostctl
