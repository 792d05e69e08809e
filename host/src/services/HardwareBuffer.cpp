// AHardwareBuffer for the host: buffers in process memory with gralloc's linear layouts. Each
// buffer has a native handle that names it, so the handle of a stream buffer leads back to it
// as gralloc's mapper does on a phone.
#include <android/hardware_buffer.h>
#include <errno.h>
#include <poll.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>
#include <vndk/hardware_buffer.h>

#include <atomic>
#include <mutex>
#include <unordered_map>

#include "hostctl/HostHardwareBuffers.h"

struct AHardwareBuffer {
    AHardwareBuffer_Desc desc;
    uint64_t id;
    size_t size;
    uint8_t* data;
    std::atomic<int32_t> refs;
    // Outstanding CPU locks; a counter, as gralloc keeps it, without a mutex per lock.
    std::atomic<int32_t> lockCount;
    native_handle_t* handle;
    std::atomic<bool> failLocks;
};

namespace {

// The ints of a host buffer's native handle: a marker, then the buffer id in two halves.
constexpr int kHandleMarker = 0x41484231;  // "AHB1"
constexpr int kHandleInts = 3;

// Live buffers by id, for AHardwareBuffer_createFromHandle.
std::mutex gRegistryLock;
std::unordered_map<uint64_t, AHardwareBuffer*>& registry() {
    static auto* buffers = new std::unordered_map<uint64_t, AHardwareBuffer*>();
    return *buffers;
}

constexpr uint32_t kFormatYCrCb420Sp = 0x11;             // HAL_PIXEL_FORMAT_YCrCb_420_SP (NV21)
constexpr uint32_t kFormatImplementationDefined = 0x22;  // camera streams' private format
constexpr uint32_t kFormatYv12 = 0x32315659;
constexpr uint64_t kCpuUsageMask =
    AHARDWAREBUFFER_USAGE_CPU_READ_MASK | AHARDWAREBUFFER_USAGE_CPU_WRITE_MASK;

std::atomic<uint64_t> gNextId{1};

enum class Layout { kPacked, kYuv420SemiPlanarCbCr, kYuv420SemiPlanarCrCb, kYv12, kP010, kNone };

struct FormatInfo {
    Layout layout;
    uint32_t bytesPerPixel;  // packed formats and the luma plane
};

FormatInfo formatInfo(uint32_t format) {
    switch (format) {
        case AHARDWAREBUFFER_FORMAT_R8G8B8A8_UNORM:
        case AHARDWAREBUFFER_FORMAT_R8G8B8X8_UNORM:
        case AHARDWAREBUFFER_FORMAT_R10G10B10A2_UNORM:
            return {Layout::kPacked, 4};
        case AHARDWAREBUFFER_FORMAT_R8G8B8_UNORM:
            return {Layout::kPacked, 3};
        case AHARDWAREBUFFER_FORMAT_R5G6B5_UNORM:
            return {Layout::kPacked, 2};
        case AHARDWAREBUFFER_FORMAT_R16G16B16A16_FLOAT:
            return {Layout::kPacked, 8};
        case AHARDWAREBUFFER_FORMAT_BLOB:
        case AHARDWAREBUFFER_FORMAT_R8_UNORM:
            return {Layout::kPacked, 1};
        case AHARDWAREBUFFER_FORMAT_Y8Cb8Cr8_420:
        case kFormatImplementationDefined:
            return {Layout::kYuv420SemiPlanarCbCr, 1};
        case kFormatYCrCb420Sp:
            return {Layout::kYuv420SemiPlanarCrCb, 1};
        case kFormatYv12:
            return {Layout::kYv12, 1};
        case AHARDWAREBUFFER_FORMAT_YCbCr_P010:
            return {Layout::kP010, 2};
        default:
            return {Layout::kNone, 0};
    }
}

uint32_t align(uint32_t v, uint32_t a) {
    return (v + a - 1) / a * a;
}

// YV12 rows are 16-pixel aligned, as the platform defines the format.
uint32_t strideFor(const AHardwareBuffer_Desc& d) {
    return formatInfo(d.format).layout == Layout::kYv12 ? align(d.width, 16) : d.width;
}

bool isYuv(Layout l) {
    return l != Layout::kPacked && l != Layout::kNone;
}

// Bytes of one layer; 0 for a description that cannot be allocated.
size_t layerBytes(const AHardwareBuffer_Desc& d) {
    const FormatInfo f = formatInfo(d.format);
    if (f.layout == Layout::kNone || d.width == 0 || d.height == 0 || d.layers == 0) return 0;
    if (d.width > 65536 || d.height > 65536 || d.layers > 64) return 0;
    if (d.format == AHARDWAREBUFFER_FORMAT_BLOB && (d.height != 1 || d.layers != 1)) return 0;
    if (isYuv(f.layout) && (d.width % 2 || d.height % 2)) return 0;
    const size_t stride = strideFor(d);
    const size_t luma = stride * d.height * f.bytesPerPixel;
    switch (f.layout) {
        case Layout::kPacked:
            return luma;
        case Layout::kYv12:
            return luma + 2 * (align(stride / 2, 16) * (d.height / 2));
        default:
            return luma + luma / 2;
    }
}

// The common checks of the lock functions; fills the start address.
int beginLock(AHardwareBuffer* buffer, uint64_t usage, int32_t fence, const ARect* rect) {
    if (fence >= 0) {
        struct pollfd p = {fence, POLLIN, 0};
        while (poll(&p, 1, -1) < 0 && errno == EINTR) {
        }
        close(fence);
    }
    if (buffer == nullptr || (usage & ~kCpuUsageMask) != 0 || buffer->desc.layers > 1) {
        return -EINVAL;
    }
    if (rect != nullptr &&
        (rect->left < 0 || rect->top < 0 || rect->left > rect->right || rect->top > rect->bottom ||
         static_cast<uint32_t>(rect->right) > buffer->desc.width ||
         static_cast<uint32_t>(rect->bottom) > buffer->desc.height)) {
        return -EINVAL;
    }
    if (buffer->failLocks.load(std::memory_order_relaxed)) return -EINVAL;
    buffer->lockCount.fetch_add(1, std::memory_order_acq_rel);
    return 0;
}

}  // namespace

extern "C" {

int AHardwareBuffer_isSupported(const AHardwareBuffer_Desc* desc) {
    return desc != nullptr && layerBytes(*desc) != 0 ? 1 : 0;
}

int AHardwareBuffer_allocate(const AHardwareBuffer_Desc* desc, AHardwareBuffer** outBuffer) {
    if (outBuffer == nullptr) return -EINVAL;
    *outBuffer = nullptr;
    if (desc == nullptr) return -EINVAL;
    const size_t bytes = layerBytes(*desc) * desc->layers;
    if (bytes == 0) return -EINVAL;
    uint8_t* data = static_cast<uint8_t*>(calloc(1, bytes));
    if (data == nullptr) return -ENOMEM;
    auto* buffer = new AHardwareBuffer();
    buffer->desc = *desc;
    buffer->desc.stride = strideFor(*desc);
    buffer->desc.rfu0 = 0;
    buffer->desc.rfu1 = 0;
    buffer->id = gNextId.fetch_add(1);
    buffer->size = bytes;
    buffer->data = data;
    buffer->refs.store(1);
    buffer->lockCount.store(0);
    buffer->failLocks.store(false);
    buffer->handle = native_handle_create(0, kHandleInts);
    if (buffer->handle == nullptr) {
        free(data);
        delete buffer;
        return -ENOMEM;
    }
    buffer->handle->data[0] = kHandleMarker;
    buffer->handle->data[1] = static_cast<int>(buffer->id & 0xffffffffu);
    buffer->handle->data[2] = static_cast<int>(buffer->id >> 32);
    {
        std::lock_guard<std::mutex> g(gRegistryLock);
        registry()[buffer->id] = buffer;
    }
    *outBuffer = buffer;
    return 0;
}

void AHardwareBuffer_acquire(AHardwareBuffer* buffer) {
    if (buffer != nullptr) buffer->refs.fetch_add(1, std::memory_order_relaxed);
}

void AHardwareBuffer_release(AHardwareBuffer* buffer) {
    if (buffer == nullptr) return;
    // Dropping a reference that is not the last needs no lock: createFromHandle adds references
    // only under the registry lock, to buffers that still have one.
    int32_t refs = buffer->refs.load(std::memory_order_relaxed);
    while (refs > 1) {
        if (buffer->refs.compare_exchange_weak(refs, refs - 1, std::memory_order_acq_rel,
                                               std::memory_order_relaxed)) {
            return;
        }
    }
    // The last reference goes under the registry lock, so that createFromHandle never revives a
    // buffer being freed.
    {
        std::lock_guard<std::mutex> g(gRegistryLock);
        if (buffer->refs.fetch_sub(1, std::memory_order_acq_rel) != 1) return;
        registry().erase(buffer->id);
    }
    native_handle_delete(buffer->handle);
    free(buffer->data);
    delete buffer;
}

const native_handle_t* AHardwareBuffer_getNativeHandle(const AHardwareBuffer* buffer) {
    return buffer != nullptr ? buffer->handle : nullptr;
}

int AHardwareBuffer_createFromHandle(const AHardwareBuffer_Desc* desc, const native_handle_t* handle,
                                     int32_t method, AHardwareBuffer** outBuffer) {
    if (outBuffer == nullptr) return -EINVAL;
    *outBuffer = nullptr;
    if (desc == nullptr || handle == nullptr || handle->numFds != 0 ||
        handle->numInts < kHandleInts || handle->data[0] != kHandleMarker ||
        (method != AHARDWAREBUFFER_CREATE_FROM_HANDLE_METHOD_REGISTER &&
         method != AHARDWAREBUFFER_CREATE_FROM_HANDLE_METHOD_CLONE)) {
        return -EINVAL;
    }
    const uint64_t id = static_cast<uint32_t>(handle->data[1]) |
                        (static_cast<uint64_t>(static_cast<uint32_t>(handle->data[2])) << 32);
    std::lock_guard<std::mutex> g(gRegistryLock);
    auto it = registry().find(id);
    if (it == registry().end()) return -EINVAL;
    it->second->refs.fetch_add(1, std::memory_order_relaxed);
    *outBuffer = it->second;
    return 0;
}

void AHardwareBuffer_describe(const AHardwareBuffer* buffer, AHardwareBuffer_Desc* outDesc) {
    if (buffer != nullptr && outDesc != nullptr) *outDesc = buffer->desc;
}

int AHardwareBuffer_lock(AHardwareBuffer* buffer, uint64_t usage, int32_t fence, const ARect* rect,
                         void** outVirtualAddress) {
    if (outVirtualAddress == nullptr) {
        if (fence >= 0) close(fence);
        return -EINVAL;
    }
    *outVirtualAddress = nullptr;
    const int err = beginLock(buffer, usage, fence, rect);
    if (err == 0) *outVirtualAddress = buffer->data;
    return err;
}

int AHardwareBuffer_lockAndGetInfo(AHardwareBuffer* buffer, uint64_t usage, int32_t fence,
                                   const ARect* rect, void** outVirtualAddress,
                                   int32_t* outBytesPerPixel, int32_t* outBytesPerStride) {
    const int err = AHardwareBuffer_lock(buffer, usage, fence, rect, outVirtualAddress);
    if (err != 0) return err;
    const FormatInfo f = formatInfo(buffer->desc.format);
    const bool packed = f.layout == Layout::kPacked;
    if (outBytesPerPixel) *outBytesPerPixel = packed ? static_cast<int32_t>(f.bytesPerPixel) : -1;
    if (outBytesPerStride) {
        *outBytesPerStride =
            packed ? static_cast<int32_t>(f.bytesPerPixel * buffer->desc.stride) : -1;
    }
    return 0;
}

int AHardwareBuffer_lockPlanes(AHardwareBuffer* buffer, uint64_t usage, int32_t fence,
                               const ARect* rect, AHardwareBuffer_Planes* outPlanes) {
    if (outPlanes == nullptr) {
        if (fence >= 0) close(fence);
        return -EINVAL;
    }
    memset(outPlanes, 0, sizeof(*outPlanes));
    const int err = beginLock(buffer, usage, fence, rect);
    if (err != 0) return err;
    const FormatInfo f = formatInfo(buffer->desc.format);
    const uint32_t stride = buffer->desc.stride;
    const uint32_t rowBytes = stride * f.bytesPerPixel;
    uint8_t* y = buffer->data;
    uint8_t* chroma = y + static_cast<size_t>(rowBytes) * buffer->desc.height;
    AHardwareBuffer_Plane* p = outPlanes->planes;
    switch (f.layout) {
        case Layout::kPacked:
            outPlanes->planeCount = 1;
            p[0] = {y, f.bytesPerPixel, rowBytes};
            break;
        case Layout::kYuv420SemiPlanarCbCr:
        case Layout::kP010: {
            const uint32_t step = 2 * f.bytesPerPixel;
            outPlanes->planeCount = 3;
            p[0] = {y, f.bytesPerPixel, rowBytes};
            p[1] = {chroma, step, rowBytes};
            p[2] = {chroma + f.bytesPerPixel, step, rowBytes};
            break;
        }
        case Layout::kYuv420SemiPlanarCrCb:
            outPlanes->planeCount = 3;
            p[0] = {y, 1, rowBytes};
            p[1] = {chroma + 1, 2, rowBytes};
            p[2] = {chroma, 2, rowBytes};
            break;
        case Layout::kYv12: {
            const uint32_t cStride = align(stride / 2, 16);
            uint8_t* cr = chroma;
            uint8_t* cb = cr + static_cast<size_t>(cStride) * (buffer->desc.height / 2);
            outPlanes->planeCount = 3;
            p[0] = {y, 1, rowBytes};
            p[1] = {cb, 1, cStride};
            p[2] = {cr, 1, cStride};
            break;
        }
        case Layout::kNone:
            break;
    }
    return 0;
}

int AHardwareBuffer_unlock(AHardwareBuffer* buffer, int32_t* fence) {
    if (fence != nullptr) *fence = -1;
    if (buffer == nullptr) return -EINVAL;
    int32_t count = buffer->lockCount.load(std::memory_order_acquire);
    do {
        if (count == 0) return -EINVAL;
    } while (!buffer->lockCount.compare_exchange_weak(count, count - 1, std::memory_order_acq_rel,
                                                      std::memory_order_acquire));
    return 0;
}

int AHardwareBuffer_getId(const AHardwareBuffer* buffer, uint64_t* outId) {
    if (buffer == nullptr || outId == nullptr) return -EINVAL;
    *outId = buffer->id;
    return 0;
}

}  // extern "C"

namespace hostctl {

void setHardwareBufferLockFails(AHardwareBuffer* buffer, bool fail) {
    if (buffer != nullptr) buffer->failLocks.store(fail, std::memory_order_relaxed);
}

size_t hardwareBufferBytes(const AHardwareBuffer* buffer) {
    return buffer != nullptr ? buffer->size : 0;
}

}  // namespace hostctl
