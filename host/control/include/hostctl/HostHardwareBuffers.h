/*
 * Host control of AHardwareBuffers and output streams whose buffers are AHardwareBuffers, as
 * gralloc backs camera stream buffers on a phone: the library reaches a buffer's memory through
 * AHardwareBuffer_createFromHandle and AHardwareBuffer_lock.
 */
#ifndef HOSTCTL_HOSTHARDWAREBUFFERS_H
#define HOSTCTL_HOSTHARDWAREBUFFERS_H

#include <android/hardware_buffer.h>
#include <stddef.h>

#include <memory>

#include "hostctl/HostOutputStream.h"

namespace hostctl {

// While `fail` is set every lock of `buffer` fails with -EINVAL (a buffer the mapper cannot map).
void setHardwareBufferLockFails(AHardwareBuffer* buffer, bool fail);
// The bytes behind the buffer (0 for null).
size_t hardwareBufferBytes(const AHardwareBuffer* buffer);

// Makes each stream buffer an AHardwareBuffer of the stream's size and format (a BLOB of the
// stream's byte size when the format has no host layout). With `locksFail` every buffer it makes
// refuses to lock.
std::shared_ptr<HostBufferAllocator> hardwareBufferAllocator(bool locksFail = false);

}  // namespace hostctl

#endif  // HOSTCTL_HOSTHARDWAREBUFFERS_H
